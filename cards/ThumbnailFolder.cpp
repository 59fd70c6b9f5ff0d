#include "cards/ThumbnailFolder.h"

#include "platform/files/FileContents.h"
#include "platform/image/Image.h"
#include "platform/image/PngDecoder.h"
#include "platform/image/PngEncoder.h"
#include "platform/image/PngFormat.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QFile>

#include <algorithm>
#include <cstdint>
#include <optional>

namespace lumenfold {
namespace {

constexpr QLatin1String suffix(".png");
constexpr QLatin1String scratchName(".writing.tmp");
constexpr qsizetype digestCharacters = 40;

/// A picture of fewer pixels is read in a few milliseconds.
constexpr std::int64_t smallestPicture = 1'000'000;
/// A thumbnail that is not so much smaller than its picture saves little, and one of a large pinned card much less.
constexpr std::int64_t smallestReduction = 4;
constexpr std::int64_t largestThumbnail = 4'000'000;
constexpr qint64 largestFile = 32 * 1024 * 1024;

std::int64_t pixelsOf(PixelSize size)
{
    return std::int64_t{size.width} * size.height;
}

QString digest(QByteArrayView bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes.toByteArray(), QCryptographicHash::Sha1).toHex());
}

QString digest(const QString &name)
{
    return digest(QByteArrayView(name.toUtf8()));
}

/// What the names of all thumbnails of that image begin with, also those of earlier versions of it.
QStringView startOf(const QString &thumbnailName)
{
    return QStringView(thumbnailName).first(digestCharacters);
}

QString nameOf(const QString &imageName, QByteArrayView fingerprint)
{
    return digest(imageName) + u'-' + digest(fingerprint) + suffix;
}

bool isThumbnailName(const QString &name)
{
    return name.size() == 2 * digestCharacters + 1 + suffix.size() && name.endsWith(suffix);
}

QSet<QString> startsOf(const QSet<QString> &imageNames)
{
    QSet<QString> starts;
    for (const QString &name : imageNames) {
        starts.insert(digest(name));
    }
    return starts;
}

} // namespace

QString ThumbnailFolder::pathOf(const QString &name) const
{
    return m_path + u'/' + name;
}

QImage ThumbnailFolder::find(const QString &imageName, QByteArrayView fingerprint) const
{
    if (m_path.isEmpty()) {
        return {};
    }
    const std::optional<QByteArray> png = readFile(pathOf(nameOf(imageName, fingerprint)), largestFile);
    const std::optional<PixelSize> size = png ? png::readHeader(*png) : std::nullopt;
    return size && pixelsOf(*size) <= largestThumbnail ? PngDecoder::decode(*png) : QImage();
}

void ThumbnailFolder::keep(const QString &imageName, QByteArrayView fingerprint, const Image &image) const
{
    const auto [picture, fit] = image.latestThumbnail();
    const std::int64_t pixels = pixelsOf({picture.width(), picture.height()});
    const std::int64_t itsPixels = pixelsOf(image.pixelSize().value_or(PixelSize{}));
    if (m_path.isEmpty() || pixels == 0 || pixels > largestThumbnail || itsPixels < smallestPicture ||
        itsPixels < pixels * smallestReduction) {
        return;
    }
    const QString name = nameOf(imageName, fingerprint);
    // One that was asked for exactly is worth more than one that is small because the card lies in a deck.
    if (fit == ThumbnailFit::atLeast && !find(imageName, fingerprint).isNull()) {
        return;
    }
    const std::optional<QByteArray> png = PngEncoder::encodeAndWait(picture);
    if (!png || !makeFolder(m_path) || !replaceFile(pathOf(name), pathOf(scratchName), *png, Sync::later)) {
        return;
    }
    removeWhere([&](const QString &other) { return startOf(other) == startOf(name) && other != name; });
}

void ThumbnailFolder::removeAllOf(const QSet<QString> &imageNames) const
{
    const QSet<QString> starts = startsOf(imageNames);
    removeWhere([&](const QString &name) { return starts.contains(startOf(name).toString()); });
}

void ThumbnailFolder::removeAllExcept(const QSet<QString> &imageNames) const
{
    const QSet<QString> starts = startsOf(imageNames);
    removeWhere([&](const QString &name) { return !starts.contains(startOf(name).toString()); });
}

template <typename Condition>
void ThumbnailFolder::removeWhere(Condition isUnneeded) const
{
    if (m_path.isEmpty()) {
        return;
    }
    QStringList unneeded;
    for (QDirIterator entries(m_path, QDir::Files | QDir::System | QDir::Hidden); entries.hasNext();) {
        entries.next();
        if (isThumbnailName(entries.fileName()) && isUnneeded(entries.fileName())) {
            unneeded.append(entries.filePath());
        }
    }
    std::ranges::for_each(unneeded, [](const QString &path) { QFile::remove(path); });
}

} // namespace lumenfold
