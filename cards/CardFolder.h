#pragma once

#include "cards/CardStore.h"
#include "platform/image/Image.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace lumenfold {

class CardWrites;

/// The folder on disk in which cards are kept from one run to the next. Any thread, one at a time but for the reading.
/// Every failure is swallowed.
class CardFolder {
public:
    /// An absolute path; the folder need not exist.
    explicit CardFolder(QString path);

    /// Makes the folder, and those above it, if they are not there.
    void create() const;
    [[nodiscard]] QString path() const { return m_path; }
    [[nodiscard]] QString pathOf(const QString &name) const;

    /// Does what was asked for; waits for images that are still being encoded. Whenever the process is killed, the list
    /// that is then on disk names no card whose images are missing, but for cards that were dismissed: images come
    /// before the list, and they go after it. Returns the text of a list that could not be written; when a disk was
    /// full, there may be room once nobody needs the images any more that went.
    /// `onProgress` is called again and again while the disk answers.
    std::optional<QByteArray> apply(const CardWrites &writes, const std::function<void()> &onProgress) const;
    /// False when it cannot be written.
    [[nodiscard]] bool writeManifest(QByteArrayView text) const;

    /// Nothing when there is no image of that name or it cannot be read.
    [[nodiscard]] std::optional<Image> image(const QString &name) const;
    /// True when both names stand for one file.
    [[nodiscard]] bool isSameFile(const QString &name, const QString &other) const;
    /// Empty when there is no list or it cannot be read.
    [[nodiscard]] std::vector<PersistedCard> manifest() const;

private:
    void saveImages(const CardWrites &writes, const std::function<void()> &onProgress) const;
    [[nodiscard]] bool write(const QString &name, QByteArrayView bytes) const;
    void removeImagesExcept(const QSet<QString> &names) const;

    const QString m_path;
};

} // namespace lumenfold
