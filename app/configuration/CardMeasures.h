#pragma once

#include "platform/geometry/Geometry.h"

#include <optional>

/// How many cards fit into the column, and how large they are then. Lengths in points.
namespace lumenfold {

/// At least 3; 6 on a screen whose visible height is 875, and proportionally more or fewer on others. Without a screen
/// 6.
[[nodiscard]] int stackCapacity(std::optional<double> visibleHeight);

/// Always 4:3, so that as many cards as stackCapacity() says fill the column between its margins. Without a screen, and
/// on one that is too low for any card, 220 x 165.
[[nodiscard]] Size defaultCardSize(std::optional<double> visibleHeight);

} // namespace lumenfold
