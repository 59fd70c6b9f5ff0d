#include "cards/ResizeHotCorner.h"

namespace lumenfold {

std::vector<ResizeHotZone> resizeHotZones(Size view, const ResizeZones &zones)
{
    const Rect card = Rect{.width = view.width, .height = view.height}.insetBy(zones.cardInset);
    if (zones.handleGrab <= 0 || card.width <= 0 || card.height <= 0) {
        return {};
    }
    const auto around = [&](double x, double y) { return Rect{.x = x, .y = y}.outsetBy(zones.handleGrab); };
    return {
        {PreviewResizeCorner::topLeft, around(card.minX() + zones.handleInset, card.maxY() - zones.handleInset)},
        {PreviewResizeCorner::bottomRight, around(card.maxX() - zones.handleInset, card.minY() + zones.handleInset)},
    };
}

std::optional<PreviewResizeCorner> handleCorner(Point point, Size view, const ResizeZones &zones)
{
    for (const auto &[corner, area] : resizeHotZones(view, zones)) {
        if (point.x >= area.minX() && point.x <= area.maxX() && point.y >= area.minY() && point.y <= area.maxY()) {
            return corner;
        }
    }
    return std::nullopt;
}

} // namespace lumenfold
