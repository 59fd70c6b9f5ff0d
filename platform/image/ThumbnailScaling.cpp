#include "platform/image/ThumbnailScaling.h"

#include "platform/image/AreaAverage.h"
#include "platform/image/PngRows.h"

#include <algorithm>
#include <optional>

namespace lumenfold {
namespace {

bool isWithin(PixelSize size, PixelSize bounds)
{
    return size.width <= bounds.width && size.height <= bounds.height;
}

/// The largest size of the same proportions within the bounds; nothing is empty.
PixelSize fittingInto(PixelSize size, PixelSize bounds)
{
    const QSize fitting =
        QSize(size.width, size.height).scaled(bounds.width, bounds.height, Qt::KeepAspectRatio).expandedTo({1, 1});
    return {fitting.width(), fitting.height()};
}

/// Of a row of red, green, blue and alpha.
bool isOpaque(const unsigned char *row, std::size_t bytes)
{
    unsigned char all = 0xff;
    for (std::size_t at = 3; at < bytes; at += 4) {
        all = static_cast<unsigned char>(all & row[at]);
    }
    return all == 0xff;
}

} // namespace

QImage opaqueCopy(const QImage &pixels)
{
    constexpr QRgb opaque = 0xff000000;
    QImage copy(pixels.size(), QImage::Format_RGB32);
    for (int y = 0; y < copy.height(); ++y) {
        const auto *source = reinterpret_cast<const QRgb *>(pixels.constScanLine(y));
        std::transform(source, source + copy.width(), reinterpret_cast<QRgb *>(copy.scanLine(y)),
                       [](QRgb pixel) { return pixel | opaque; });
    }
    return copy;
}

bool isThumbnail(const QImage &found, PixelSize size, PixelSize bounds, ThumbnailFit fit)
{
    if (found.isNull() || bounds.isEmpty() || isWithin(size, bounds)) {
        return false;
    }
    const PixelSize fitting = fittingInto(size, bounds);
    const PixelSize itsSize{found.width(), found.height()};
    if (itsSize == fitting || fit == ThumbnailFit::exact) {
        return itsSize == fitting;
    }
    return isWithin(fitting, itsSize) && itsSize.width <= fitting.width * largestThumbnailExcess &&
           fittingInto(size, itsSize) == itsSize;
}

QImage scaledInto(const QImage &pixels, PixelSize bounds)
{
    const PixelSize size{pixels.width(), pixels.height()};
    if (pixels.isNull() || bounds.isEmpty()) {
        return {};
    }
    const bool isOpaque = pixels.format() == QImage::Format_RGB32;
    if (isWithin(size, bounds)) {
        return isOpaque ? opaqueCopy(pixels) : pixels.copy();
    }
    const PixelSize fitting = fittingInto(size, bounds);
    return isOpaque ? AreaAverage::of(pixels, fitting)
                    : pixels.scaled(fitting.width, fitting.height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage scaledInto(const QByteArray &png, PixelSize bounds)
{
    std::optional<PngRows> rows = bounds.isEmpty() ? std::nullopt : PngRows::open(png);
    if (!rows || isWithin(rows->size(), bounds)) {
        return {};
    }
    const bool hasAlpha = rows->pixelBytes() == 4;
    const std::size_t rowBytes = static_cast<std::size_t>(rows->size().width) * rows->pixelBytes();
    AreaAverage average(rows->size(), fittingInto(rows->size(), bounds),
                        hasAlpha ? AreaAverage::Layout::rgbx : AreaAverage::Layout::rgb);
    for (int y = 0; y < rows->size().height; ++y) {
        const unsigned char *const row = rows->next();
        if (!row || (hasAlpha && !isOpaque(row, rowBytes))) {
            return {};
        }
        average.addRow(row);
    }
    return average.result();
}

} // namespace lumenfold
