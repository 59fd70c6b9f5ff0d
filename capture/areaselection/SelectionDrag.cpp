#include "capture/areaselection/SelectionDrag.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumenfold {

void SelectionDrag::begin(Point location, SnapEdges edges, Size viewSize)
{
    m_edges = std::move(edges);
    m_viewSize = viewSize;
    m_startPoint = snapped(location);
    m_currentRect = Rect{m_startPoint->x, m_startPoint->y, 0, 0};
}

void SelectionDrag::drag(Point location)
{
    if (!m_startPoint) {
        return;
    }
    const Point start = *m_startPoint;
    const Point now = snapped(location);
    m_currentRect =
        Rect{std::min(now.x, start.x), std::min(now.y, start.y), std::abs(now.x - start.x), std::abs(now.y - start.y)};
}

std::optional<Rect> SelectionDrag::end()
{
    const std::optional<Rect> rect = m_currentRect;
    cancel();
    if (!rect || rect->width <= largestClick || rect->height <= largestClick) {
        return std::nullopt;
    }
    return rect;
}

void SelectionDrag::cancel()
{
    m_startPoint.reset();
    m_currentRect.reset();
}

Point SelectionDrag::snapped(Point location) const
{
    return m_edges.snapped(
        {std::clamp(location.x, 0.0, m_viewSize.width), std::clamp(location.y, 0.0, m_viewSize.height)});
}

} // namespace lumenfold
