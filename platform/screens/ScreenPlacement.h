#pragma once

#include "platform/screens/ScreenSpace.h"

#include <vector>

namespace lumenfold {

/// Where each screen's frame is in points when the first one is the main screen (see ScreenSpace for the rules). One
/// frame per screen, in the same order.
[[nodiscard]] std::vector<Rect> placedFrames(const std::vector<ScreenGeometry> &screens);

} // namespace lumenfold
