#pragma once

#include "platform/geometry/Geometry.h"
#include "platform/screencapture/ScreenCapture.h"
#include "platform/screens/Screens.h"

#include <optional>

/// What to ask of the capture framework. Pure.
namespace lumenfold {

/// `rect` (global points, y up) in the display's own space: points from the TOP left corner of `screenFrame`, y down.
[[nodiscard]] Rect sourceRect(const Rect &rect, const Rect &screenFrame);

/// Pixels of a picture of an area of `size` points: each side times the scale, truncated toward zero.
[[nodiscard]] PixelSize areaOutputSize(Size size, double backingScale);

/// Pixels of a picture of a whole display: its size in points times the MAIN screen's scale as a whole number, 2 while
/// there is no main screen. The captured display's own scale does not count, so that pictures of all displays come out
/// at one density.
[[nodiscard]] PixelSize fullScreenOutputSize(const ShareableDisplay &display, const std::optional<Screen> &mainScreen);

} // namespace lumenfold
