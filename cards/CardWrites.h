#pragma once

#include "cards/CardStore.h"
#include "platform/image/Image.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <optional>
#include <vector>

namespace lumenfold {

/// What has been asked for and not been done in the card folder, file by file: what was asked for last counts. So a
/// card that is dismissed and brought back before anything was written costs one write, and two hundred that are
/// dismissed together cost one list.
class CardWrites {
public:
    struct Save {
        QString name;
        Image image;
    };

    void save(const QString &name, const Image &image);
    void remove(const QString &name);
    /// What has been saved so far of cards that are not in the list is not saved.
    void list(std::vector<PersistedCard> cards);

    /// Asks for all that was asked for there, after what was asked for here.
    void append(const CardWrites &later);
    /// That image has its bytes in a file that one of these writes deletes or replaces, and may still be shown.
    void keepBytesOf(const Image &image) { m_imagesOfFiles.push_back(image); }

    /// That image, which is in the file of that name, has a thumbnail for the next run. Nothing when the name is going
    /// to be another image's, or nobody's.
    void keepThumbnail(const QString &name, const Image &image);

    [[nodiscard]] bool isEmpty() const { return m_saves.empty() && m_removals.isEmpty() && !m_manifest; }
    /// In the order in which they were asked for.
    [[nodiscard]] std::vector<Save> saves() const;
    [[nodiscard]] const QSet<QString> &removals() const { return m_removals; }
    [[nodiscard]] const std::optional<std::vector<PersistedCard>> &manifest() const { return m_manifest; }
    [[nodiscard]] const std::vector<Image> &imagesOfFiles() const { return m_imagesOfFiles; }
    /// By the names of their files.
    [[nodiscard]] const QHash<QString, Image> &thumbnails() const { return m_thumbnails; }
    /// What is going to be saved under that name, if anything is.
    [[nodiscard]] std::optional<Image> imageToSave(const QString &name) const;

    /// True when no image will be under that name.
    [[nodiscard]] bool removes(const QString &name) const;

    /// The names of the images that stay when the list is written.
    [[nodiscard]] QSet<QString> namesToKeep() const;

private:
    struct AskedSave : Save {
        bool isBeforeList = false;
    };

    std::vector<AskedSave> m_saves;
    QSet<QString> m_removals;
    std::optional<std::vector<PersistedCard>> m_manifest;
    std::vector<Image> m_imagesOfFiles;
    QHash<QString, Image> m_thumbnails;
};

} // namespace lumenfold
