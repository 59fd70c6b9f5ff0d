#include "capture/CaptureGeometry.h"

#include <limits>

namespace lumenfold {
namespace {

/// Toward zero; what no int can hold becomes the nearest int, and a NaN 0. (A plain cast of those is undefined.)
int truncated(double value)
{
    if (std::isnan(value)) {
        return 0;
    }
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(value, lowest, highest));
}

} // namespace

Rect sourceRect(const Rect &rect, const Rect &screenFrame)
{
    return {rect.x - screenFrame.x, screenFrame.height - (rect.y - screenFrame.y) - rect.height, rect.width,
            rect.height};
}

PixelSize areaOutputSize(Size size, double backingScale)
{
    return {truncated(size.width * backingScale), truncated(size.height * backingScale)};
}

PixelSize fullScreenOutputSize(const ShareableDisplay &display, const std::optional<Screen> &mainScreen)
{
    constexpr int scaleWithoutMainScreen = 2;
    const int scale = mainScreen ? truncated(mainScreen->backingScale) : scaleWithoutMainScreen;
    return {truncated(std::trunc(display.width) * scale), truncated(std::trunc(display.height) * scale)};
}

} // namespace lumenfold
