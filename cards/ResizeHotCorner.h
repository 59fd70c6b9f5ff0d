#pragma once

#include "cards/PreviewCardVariant.h"
#include "platform/geometry/Geometry.h"

#include <optional>
#include <vector>

/// Where a card is taken hold of to resize it. Points, in the view's own coordinates: its lower left corner is (0, 0),
/// y upwards.
namespace lumenfold {

struct ResizeZones {
    /// From the view's edges to the card's visible edges.
    double cardInset = 0;
    /// From a corner of the card to the middle of its zone, along both axes.
    double handleInset = 0;
    /// Half the side of the square zone; 0 or less: there is none.
    double handleGrab = 0;

    friend bool operator==(const ResizeZones &, const ResizeZones &) = default;
};

struct ResizeHotZone {
    PreviewResizeCorner corner = PreviewResizeCorner::topLeft;
    /// All of its edges belong to the zone.
    Rect area;
};

/// The zones of a view of that size, the one that wins where they overlap first. Empty for a card of no size.
[[nodiscard]] std::vector<ResizeHotZone> resizeHotZones(Size view, const ResizeZones &zones);

/// The corner whose zone holds the point.
[[nodiscard]] std::optional<PreviewResizeCorner> handleCorner(Point point, Size view, const ResizeZones &zones);

} // namespace lumenfold
