#include "cards/CardFolder.h"

#include "cards/CardFileNames.h"
#include "cards/CardWrites.h"
#include "cards/PersistedCardCoding.h"
#include "platform/image/PngFile.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace lumenfold {

CardFolder::CardFolder(QString path, QString thumbnails) : m_path(std::move(path)), m_thumbnails(std::move(thumbnails))
{
}

void CardFolder::create() const
{
    QDir().mkpath(m_path);
}

QString CardFolder::pathOf(const QString &name) const
{
    return m_path + u'/' + name;
}

std::optional<QByteArray> CardFolder::apply(const CardWrites &writes, const std::function<void()> &onProgress) const
{
    makeFolder(m_path);
    for (const Image &image : writes.imagesOfFiles()) {
        image.keepBytesOfFile();
        onProgress();
    }
    const QSet<QString> saved = saveImages(writes, onProgress);
    std::optional<QByteArray> list = writes.manifest() ? encodePersistedCards(*writes.manifest()) : std::nullopt;
    if (list && writeManifest(*list)) {
        list.reset();
    }
    for (const QString &name : writes.removals()) {
        QFile::remove(pathOf(name));
        onProgress();
    }
    if (writes.manifest()) {
        removeImagesExcept(writes.namesToKeep());
    }
    updateThumbnails(writes, saved);
    return list;
}

bool CardFolder::writeManifest(QByteArrayView text) const
{
    const bool isWritten = write(manifestFileName, text, Sync::first);
    syncFolder(m_path);
    return isWritten;
}

QSet<QString> CardFolder::saveImages(const CardWrites &writes, const std::function<void()> &onProgress) const
{
    const CardWrites::Save *written = nullptr;
    QStringList unsynced;
    QSet<QString> saved;
    const std::vector<CardWrites::Save> saves = writes.saves();
    for (const CardWrites::Save &save : saves) {
        onProgress();
        // A card's image usually is its editor source image, too.
        if (written && written->image == save.image &&
            replaceFileByLink(pathOf(save.name), pathOf(scratchFileName), pathOf(written->name))) {
            saved.insert(save.name);
            continue;
        }
        const std::optional<QByteArray> png = save.image.pngData();
        const Sync when = QFileInfo::exists(pathOf(save.name)) ? Sync::first : Sync::later;
        if (png && write(save.name, *png, when)) {
            save.image.leaveBytesToFile(pathOf(save.name));
            written = &save;
            saved.insert(save.name);
            if (when == Sync::later) {
                unsynced.append(pathOf(save.name));
            }
        }
    }
    if (!saves.empty()) {
        syncFiles(unsynced, onProgress);
        syncFolder(m_path);
        onProgress();
    }
    return saved;
}

bool CardFolder::write(const QString &name, QByteArrayView bytes, Sync when) const
{
    return replaceFile(pathOf(name), pathOf(scratchFileName), bytes, when).has_value();
}

void CardFolder::removeImagesExcept(const QSet<QString> &names) const
{
    // With Files and System come links that lead nowhere; folders stay, whatever they are called.
    QDirIterator entries(m_path, QDir::Files | QDir::System | QDir::Hidden);
    QStringList orphans;
    while (entries.hasNext()) {
        entries.next();
        if (isImageFileName(entries.fileName()) && !names.contains(entries.fileName())) {
            orphans.append(entries.filePath());
        }
    }
    for (const QString &orphan : orphans) {
        QFile::remove(orphan);
    }
}

void CardFolder::updateThumbnails(const CardWrites &writes, const QSet<QString> &saved) const
{
    if (writes.manifest()) {
        m_thumbnails.removeAllExcept(writes.namesToKeep());
    } else if (!writes.removals().isEmpty()) {
        m_thumbnails.removeAllOf(writes.removals());
    }
    const QHash<QString, Image> &thumbnails = writes.thumbnails();
    for (auto each = thumbnails.begin(); each != thumbnails.end(); ++each) {
        const std::unique_ptr<PngFile> file = PngFile::open(pathOf(each.key()));
        const std::optional<QByteArray> fingerprint = file ? file->fingerprint() : std::nullopt;
        // The card may be gone meanwhile, or show something else.
        const bool isItsFile = saved.contains(each.key()) || each->fileFingerprint() == fingerprint;
        if (fingerprint && isItsFile) {
            m_thumbnails.keep(each.key(), *fingerprint, *each);
        }
    }
}

QImage CardFolder::thumbnail(const QString &name, const Image &image) const
{
    const std::optional<QByteArray> fingerprint = image.fileFingerprint();
    return fingerprint ? m_thumbnails.find(name, *fingerprint) : QImage();
}

std::optional<Image> CardFolder::image(const QString &name) const
{
    Image image = Image::fromPngFile(pathOf(name));
    return image.isNull() ? std::nullopt : std::optional(std::move(image));
}

bool CardFolder::isSameFile(const QString &name, const QString &other) const
{
    return areSameFile(pathOf(name), pathOf(other));
}

std::vector<PersistedCard> CardFolder::manifest() const
{
    const std::optional<QByteArray> text = readFile(pathOf(manifestFileName), maximumManifestBytes);
    return (text ? decodePersistedCards(*text) : std::nullopt).value_or(std::vector<PersistedCard>());
}

} // namespace lumenfold
