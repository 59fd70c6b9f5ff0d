#include "editor/bridge/EditedPicture.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>

namespace lumenfold {
namespace {

/// As large as a PNG is believed to be.
constexpr int maximumSide = 32767;

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
    if (Image image = Image::fromPng(bytes); !image.isNull()) {
        return image.pixels().isNull() ? Image() : image;
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
