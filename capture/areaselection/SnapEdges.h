#pragma once

#include "platform/geometry/Geometry.h"
#include "platform/windowlist/WindowList.h"

#include <vector>

namespace lumenfold {

/// The edges that a selection snaps to, in one screen's view coordinates (points, origin at the screen's bottom left,
/// y up). Pure.
struct SnapEdges {
    /// Points. An edge exactly this far away does not attract.
    static constexpr double snapThreshold = 8;

    /// Vertical edges (x values) and horizontal edges (y values): first the windows' front to back, then the screen's
    /// own. Neither sorted nor free of duplicates.
    std::vector<double> snapXs;
    std::vector<double> snapYs;

    /// The nearest edge within the threshold, for x and y separately; of equally near ones the first in the list.
    [[nodiscard]] Point snapped(Point point) const;

    friend bool operator==(const SnapEdges &, const SnapEdges &) = default;
};

struct SnapEdgesOptions {
    /// The screen of the view, in global points.
    Rect screenFrame;
    /// The height of the main screen, with which the window server's bounds are turned over.
    double mainScreenHeight = 0;
    /// Its windows are never snapped to.
    qint64 ownProcessID = 0;
};

/// The edges of the ordinary windows in `windows` (other programs', layer 0 or unknown, more than a point large) and of
/// the screen. `windows` is front to back.
[[nodiscard]] SnapEdges snapEdges(const std::vector<WindowInfo> &windows, const SnapEdgesOptions &options);

} // namespace lumenfold
