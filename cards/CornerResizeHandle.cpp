#include "cards/CornerResizeHandle.h"

namespace lumenfold {

QPainterPath CornerResizeHandle::path(const QRectF &rect) const
{
    const double diameter = 2 * cornerRadius;
    // Clockwise around the upper left corner, against the clock around the lower right one.
    constexpr double quarter = -90;
    QPainterPath path;
    if (corner == Corner::topLeft) {
        path.moveTo(rect.bottomLeft());
        path.arcTo(QRectF(rect.left(), rect.top(), diameter, diameter), 180, quarter);
        path.lineTo(rect.topRight());
    } else {
        path.moveTo(rect.topRight());
        path.arcTo(QRectF(rect.right() - diameter, rect.bottom() - diameter, diameter, diameter), 0, quarter);
        path.lineTo(rect.bottomLeft());
    }
    return path;
}

} // namespace lumenfold
