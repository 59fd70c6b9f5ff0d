#pragma once

#include <QPainterPath>
#include <QRectF>

namespace lumenfold {

/// The mark at a corner by which a card can be resized: a line around the corner with a rounded bend.
struct CornerResizeHandle {
    enum class Corner { topLeft, bottomRight };

    Corner corner = Corner::topLeft;
    /// Of the bend, in points.
    double cornerRadius = 10;

    /// The line to be stroked, inside that rectangle of a view (y downwards).
    [[nodiscard]] QPainterPath path(const QRectF &rect) const;
};

} // namespace lumenfold
