#pragma once

#include "platform/geometry/Geometry.h"
#include "platform/screens/ScreenSpace.h"

#include <QRect>

#include <optional>

namespace lumenfold {

/// The device pixels that a panel covers: each edge at the nearest pixel, halves towards the right and the bottom on
/// either side of 0, so that panels which share an edge in points share it in pixels. At least one pixel wide and high.
///
/// A panel that moves without changing its size passes its destination: it then has the size it will have there, all
/// the way, where rounding each edge by itself would make it breathe by a pixel.
[[nodiscard]] QRect pixelFrame(const ScreenSpace &space, const Rect &frame,
                               const std::optional<Rect> &destinationOfMove = std::nullopt);

} // namespace lumenfold
