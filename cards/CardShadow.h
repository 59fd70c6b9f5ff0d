#pragma once

#include <QPointF>
#include <QRectF>

class QPainter;

namespace lumenfold {

/// A soft shadow of a rounded rectangle. Lengths in points.
struct CardShadow {
    double cornerRadius = 0;
    /// Twice the standard deviation of the blur.
    double blurRadius = 0;
    /// Of black, 0 to 1.
    double opacity = 0;
    /// y downwards.
    QPointF offset;

    friend bool operator==(const CardShadow &, const CardShadow &) = default;
};

/// Paints the shadow that `caster` throws; also beneath the caster itself. The blurred shape is made once for each kind
/// of shadow and device pixel ratio and then stretched, so painting costs next to nothing. The caster should be wider
/// and higher than twice the sum of its corner radius and the blur radius.
void paintShadow(QPainter &painter, const QRectF &caster, const CardShadow &shadow);

/// The same for a caster of any size, as small as a button: the whole shape is blurred, once for each size.
void paintSmallShadow(QPainter &painter, const QRectF &caster, const CardShadow &shadow);

} // namespace lumenfold
