#include "platform/panels/PixelFrame.h"

#include <algorithm>
#include <cmath>

namespace lumenfold {
namespace {

/// X11 has 16-bit places and sizes; what lies further out is nowhere on any screen.
constexpr double farthest = 32767;

int nearestPixel(double edge)
{
    return static_cast<int>(std::floor(std::clamp(edge, -farthest, farthest) + 0.5));
}

} // namespace

QRect pixelFrame(const ScreenSpace &space, const Rect &frame, const std::optional<Rect> &destinationOfMove)
{
    const QRectF native = space.toNative(frame);
    const int left = nearestPixel(native.left());
    const int top = nearestPixel(native.top());
    if (destinationOfMove) {
        return {QPoint(left, top), pixelFrame(space, *destinationOfMove).size()};
    }
    const int right = nearestPixel(native.left() + native.width());
    const int bottom = nearestPixel(native.top() + native.height());
    return {left, top, std::max(right - left, 1), std::max(bottom - top, 1)};
}

} // namespace lumenfold
