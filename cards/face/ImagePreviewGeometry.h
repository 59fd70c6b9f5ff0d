#pragma once

#include "platform/geometry/Geometry.h"

#include <optional>

/// How large one picture is shown. Points.
namespace lumenfold {

/// The largest size of that ratio (width by height) that fits into 70 % of the visible frame's width and height; small
/// pictures are enlarged to it.
[[nodiscard]] Size imagePreviewSize(Size visibleFrame, double aspectRatio);

/// The window: the picture with the margin around it, in the middle of the visible frame. Without a screen, of one of
/// 1440 x 900 at the origin.
[[nodiscard]] Rect imagePreviewFrame(const std::optional<Rect> &visibleFrame, double aspectRatio, double hitMargin);

} // namespace lumenfold
