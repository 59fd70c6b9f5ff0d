#pragma once

#include "capture/areaselection/SnapEdges.h"

#include <optional>

namespace lumenfold {

/// One drag on one screen's overlay, from the press to the release, in that view's coordinates (points, origin at the
/// screen's bottom left, y up). Pure.
class SelectionDrag {
public:
    /// A selection must be larger than this in both directions, in points; anything less was a click.
    static constexpr double largestClick = 4;

    /// `viewSize` bounds the drag: while the button is down the pointer may leave the screen, the selection may not.
    void begin(Point location, SnapEdges edges, Size viewSize);

    /// Nothing without a begin().
    void drag(Point location);

    /// Ends the drag and says what was selected; nothing for a click or without a begin().
    std::optional<Rect> end();

    /// Forgets the drag.
    void cancel();

    [[nodiscard]] const std::optional<Point> &startPoint() const { return m_startPoint; }
    [[nodiscard]] const std::optional<Rect> &currentRect() const { return m_currentRect; }

private:
    [[nodiscard]] Point snapped(Point location) const;

    SnapEdges m_edges;
    Size m_viewSize;
    std::optional<Point> m_startPoint;
    std::optional<Rect> m_currentRect;
};

} // namespace lumenfold
