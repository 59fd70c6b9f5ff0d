#include "cards/CardFolder.h"

#include "cards/CardFileNames.h"
#include "cards/CardWrites.h"
#include "cards/PersistedCardCoding.h"
#include "platform/files/FileContents.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <utility>

namespace lumenfold {

CardFolder::CardFolder(QString path) : m_path(std::move(path)) {}

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
    create();
    for (const Image &image : writes.imagesOfFiles()) {
        image.keepBytesOfFile();
        onProgress();
    }
    saveImages(writes, onProgress);
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
    return list;
}

bool CardFolder::writeManifest(QByteArrayView text) const
{
    return write(manifestFileName, text);
}

void CardFolder::saveImages(const CardWrites &writes, const std::function<void()> &onProgress) const
{
    const CardWrites::Save *written = nullptr;
    const std::vector<CardWrites::Save> saves = writes.saves();
    for (const CardWrites::Save &save : saves) {
        onProgress();
        // A card's image usually is its editor source image, too.
        if (written && written->image == save.image &&
            replaceFileByLink(pathOf(save.name), pathOf(scratchFileName), pathOf(written->name))) {
            continue;
        }
        const std::optional<QByteArray> png = save.image.pngData();
        if (png && write(save.name, *png)) {
            save.image.leaveBytesToFile(pathOf(save.name));
            written = &save;
        }
    }
}

bool CardFolder::write(const QString &name, QByteArrayView bytes) const
{
    return replaceFile(pathOf(name), pathOf(scratchFileName), bytes);
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
