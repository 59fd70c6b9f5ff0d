#include "editor/bridge/EditedPicture.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>

namespace lumenfold {
namespace {

/// As large as a PNG is believed to be.
constexpr int maximumSide = 32767;
/// In pixels: about what an ordinary card has on a screen of scale 2.
constexpr PixelSize sizeOfFirstThumbnail{480, 360};

QByteArray formatOf(const QByteArray &bytes)
{
    if (bytes.startsWith("\xff\xd8\xff")) {
        return "jpeg";
    }
    const bool isWebP = bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP";
    return isWebP ? "webp" : QByteArray();
}

} // namespace

Image readEditedPicture(const QByteArray &bytes)
{
    if (const Image image = Image::fromPng(bytes); !image.isNull()) {
        // Which reads every row, and is what the card shows until it has made one of its own size.
        const bool isWhole = !image.thumbnail(sizeOfFirstThumbnail, ThumbnailFit::atLeast).isNull();
        image.releasePixelsWhenEncoded();
        return isWhole ? image : Image();
    }
    const QByteArray format = formatOf(bytes);
    if (format.isEmpty()) {
        return {};
    }
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer, format);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isEmpty() || std::max(size.width(), size.height()) > maximumSide) {
        return {};
    }
    return Image::fromPixels(reader.read());
}

} // namespace lumenfold
