#include "service/templates/PreviewDecoder.h"

#include "platform/image/Image.h"
#include "platform/image/PngFormat.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>

namespace lumenfold {
namespace {

const QByteArrayView jpegStart("\xff\xd8\xff", 3);
const QByteArrayView jpegEnd("\xff\xd9", 2);
const QByteArrayView jpegScan("\xff\xda", 2);

/// Cameras and servers put a little something behind the end.
constexpr qsizetype maximumJpegTail = 1024;
/// A progressive picture has about ten. Each goes over all pixels, so that a short file could keep a thread busy for
/// minutes.
constexpr qsizetype maximumJpegScans = 64;

bool isBelievable(QSize size)
{
    return !size.isEmpty() && std::max(size.width(), size.height()) <= maximumPreviewSide &&
           qint64{size.width()} * size.height() <= maximumPreviewPixels;
}

QSize fittingInto(QSize size, PixelSize bounds)
{
    const QSize room(bounds.width, bounds.height);
    if (size.width() <= room.width() && size.height() <= room.height()) {
        return size;
    }
    return size.scaled(room, Qt::KeepAspectRatio).expandedTo({1, 1});
}

QImage decodePng(const QByteArray &bytes, PixelSize bounds)
{
    const std::optional<PixelSize> size = png::readHeader(bytes);
    if (!size || !isBelievable({size->width, size->height})) {
        return {};
    }
    return Image::fromPng(bytes).thumbnail(bounds);
}

QImage decodeJpeg(QByteArray bytes, PixelSize bounds)
{
    // The library fills up with grey what is missing.
    const bool isWhole = QByteArrayView(bytes).last(std::min(bytes.size(), maximumJpegTail)).contains(jpegEnd);
    if (!isWhole || QByteArrayView(bytes).count(jpegScan) > maximumJpegScans) {
        return {};
    }
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer, "jpeg");
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!isBelievable(size)) {
        return {};
    }
    // A camera may have been held upright: the file then has the sides the other way round.
    const bool isTurned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const QSize fitting = fittingInto(isTurned ? size.transposed() : size, bounds);
    reader.setScaledSize(isTurned ? fitting.transposed() : fitting);
    return reader.read();
}

} // namespace

QImage decodePreview(const QByteArray &bytes, PixelSize bounds)
{
    if (bounds.isEmpty() || bytes.size() > maximumPreviewBytes) {
        return {};
    }
    QImage picture = bytes.startsWith(jpegStart) ? decodeJpeg(bytes, bounds) : decodePng(bytes, bounds);
    if (!picture.isNull()) {
        // As the toolkit paints fastest.
        picture.convertTo(picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    }
    return picture;
}

} // namespace lumenfold
