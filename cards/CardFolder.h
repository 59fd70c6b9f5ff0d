#pragma once

#include "cards/CardStore.h"
#include "cards/ThumbnailFolder.h"
#include "platform/files/FileContents.h"
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
    /// Absolute paths; the folders need not exist. Without `thumbnails` nothing is kept there.
    CardFolder(QString path, QString thumbnails);

    /// Makes the folder, and those above it, if they are not there.
    void create() const;
    [[nodiscard]] QString path() const { return m_path; }
    [[nodiscard]] QString pathOf(const QString &name) const;

    /// Does what was asked for; waits for images that are still being encoded. Whenever the process is killed, the list
    /// that is then on disk names no card whose images are missing, but for cards that were dismissed: images come
    /// before the list, and they go after it; a power cut finds the same order on the disk. Returns the text of a list
    /// that could not be written; when a disk was full, there may be room once nobody needs the images any more that
    /// went. `onProgress` is called again and again while the disk answers.
    std::optional<QByteArray> apply(const CardWrites &writes, const std::function<void()> &onProgress) const;
    /// False when it cannot be written.
    [[nodiscard]] bool writeManifest(QByteArrayView text) const;

    /// Nothing when there is no image of that name or it cannot be read.
    [[nodiscard]] std::optional<Image> image(const QString &name) const;
    /// A thumbnail of that image as it now is in the file of that name; of any size, and null when there is none.
    [[nodiscard]] QImage thumbnail(const QString &name, const Image &image) const;
    /// True when both names stand for one file.
    [[nodiscard]] bool isSameFile(const QString &name, const QString &other) const;
    /// Empty when there is no list or it cannot be read.
    [[nodiscard]] std::vector<PersistedCard> manifest() const;

private:
    /// Returns the names of the files that now have what they were to have.
    [[nodiscard]] QSet<QString> saveImages(const CardWrites &writes, const std::function<void()> &onProgress) const;
    [[nodiscard]] bool write(const QString &name, QByteArrayView bytes, Sync when) const;
    void removeImagesExcept(const QSet<QString> &names) const;
    /// Last of all, because nothing depends on them.
    void updateThumbnails(const CardWrites &writes, const QSet<QString> &saved) const;

    const QString m_path;
    const ThumbnailFolder m_thumbnails;
};

} // namespace lumenfold
