#pragma once

#include "cards/CardFolder.h"
#include "cards/CardStore.h"
#include "cards/CardWrites.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QUrl>

#include <chrono>
#include <memory>

namespace lumenfold {

/// Keeps the cards in a folder: a PNG file for each image and one list, "manifest.json". What is asked for in one turn
/// of the event loop is done together, on a thread of its own that ends when there is nothing to do; so a list on disk
/// never names a card whose images are not there, at whatever moment the program is killed. Main thread.
class CardPersistence : public CardStore {
public:
    /// How long the program waits at its end for a disk that does not answer.
    static constexpr std::chrono::milliseconds longestStandstill{5000};

    /// Where cards are kept, beneath the folder in which programs keep what they need.
    static constexpr QLatin1String relativePath{"LumenFold/cards"};

    /// Where small copies of the images are kept, beneath the folder for what programs can make again.
    static constexpr QLatin1String relativeThumbnailPath{"LumenFold/card-thumbnails"};

    /// Absolute paths; the folders are made when something is written. Without the second there are no thumbnails.
    explicit CardPersistence(const QString &folder, const QString &thumbnailFolder = {});
    /// Does what is left to do, as flush().
    ~CardPersistence() override;

    /// The folder; made by this call if it is not there.
    QUrl directory() const;
    /// Where the images of a card are; empty for an id of which there can be no file.
    [[nodiscard]] QUrl imageURL(const QString &id) const;
    [[nodiscard]] QUrl editorSourceImageURL(const QString &id) const;

    void saveImage(const Image &image, const QString &id) override;
    void saveEditorSourceImage(const Image &image, const QString &id) override;
    /// Reads the file's beginning and end alone, and the rest when it is asked for.
    [[nodiscard]] std::optional<Image> loadImage(const QString &id) override;
    /// The same picture as the image's, when both are one file.
    [[nodiscard]] std::optional<Image> loadEditorSourceImage(const QString &id) override;
    void deleteImage(const QString &id) override;
    void writeManifest(const std::vector<PersistedCard> &cards) override;
    /// An id that comes again in the list is left out: it would be a second card with the same files.
    [[nodiscard]] std::vector<PersistedCard> readManifest() override;

    /// Returns when everything that was asked for is done, or when for this long no file is; then it returns false.
    bool flush(std::chrono::milliseconds standstill = longestStandstill);

private:
    class Worker;
    class Thumbnails;

    [[nodiscard]] QUrl urlOf(const std::optional<QString> &name) const;
    void save(const Image &image, const std::optional<QString> &name);
    void remove(const std::optional<QString> &name);
    [[nodiscard]] std::optional<Image> load(const QString &name);
    void keepThumbnails(const Image &image, const QString &name);
    /// Before that file goes: whoever shows what is in it must not lose it.
    void keepBytesOf(const QString &name);
    void scheduleWork();
    void handOver();

    const CardFolder m_folder;
    /// Lives on when the disk does not answer at the end.
    std::shared_ptr<Worker> m_worker;
    /// Of the present turn of the event loop.
    CardWrites m_asked;
    bool m_isWorkScheduled = false;
    /// What is in the files of the cards, by their names. An image may have its bytes nowhere else.
    QHash<QString, Image> m_stored;
    /// Goes first, and with it what is scheduled.
    QObject m_context;
};

} // namespace lumenfold
