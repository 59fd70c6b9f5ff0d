#include "platform/screencapture/PixelCrop.h"

#include <algorithm>
#include <cmath>

namespace lumenfold {
namespace {

/// Coordinates of the X protocol are 16 bits with a sign.
constexpr int maxCoordinate = 32767;

bool isWithinProtocol(const Rect &rect)
{
    return rect.isFinite() && rect.x >= -maxCoordinate && rect.y >= -maxCoordinate &&
           rect.x + rect.width <= maxCoordinate && rect.y + rect.height <= maxCoordinate && rect.width > 0 &&
           rect.height > 0;
}

bool isWithinProtocol(PixelSize size)
{
    return !size.isEmpty() && size.width <= maxCoordinate && size.height <= maxCoordinate;
}

int nearest(double value)
{
    return static_cast<int>(std::lround(value));
}

} // namespace

std::optional<PixelCrop> pixelCrop(PixelSize display, double scale, const StreamConfiguration &configuration)
{
    const PixelSize output{configuration.width, configuration.height};
    Rect pixels{0, 0, static_cast<double>(display.width), static_cast<double>(display.height)};
    if (const auto &asked = configuration.sourceRect) {
        pixels = {asked->x * scale, asked->y * scale, asked->width * scale, asked->height * scale};
    }
    if (!isWithinProtocol(output) || !isWithinProtocol(pixels)) {
        return std::nullopt;
    }

    const QPoint origin(nearest(pixels.x), nearest(pixels.y));
    const bool isSameSize = std::abs(pixels.width - output.width) < 1 && std::abs(pixels.height - output.height) < 1;
    if (isSameSize) {
        return PixelCrop{.source = QRect(origin, QSize(output.width, output.height)), .output = output};
    }
    const QSize size(std::max(1, nearest(pixels.x + pixels.width) - origin.x()),
                     std::max(1, nearest(pixels.y + pixels.height) - origin.y()));
    return PixelCrop{.source = QRect(origin, size), .output = output};
}

} // namespace lumenfold
