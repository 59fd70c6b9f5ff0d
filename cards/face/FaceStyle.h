#pragma once

#include "cards/CardShadow.h"

#include <QBrush>
#include <QColor>
#include <QFont>
#include <QRectF>

class QPainter;

/// The looks that the parts of a card's face share. Lengths in points, which are the toolkit's device-independent
/// pixels.
namespace lumenfold::facestyle {

inline constexpr double borderWidth = 1;

/// Of a card's content.
inline constexpr double cardCornerRadius = 14;

inline constexpr double cornerButtonSize = 24;
/// By this much the middle of a corner button lies outside the card's edges.
inline constexpr double cornerButtonSafeArea = 10;
inline constexpr double closeButtonIconSize = 9;
inline constexpr double pinButtonIconSize = 8;

/// Of corner buttons and pills; the corner radius is the caster's own.
[[nodiscard]] constexpr CardShadow controlShadow(double cornerRadius)
{
    return {.cornerRadius = cornerRadius, .blurRadius = 8, .opacity = 0.38, .offset = {0, 3}};
}

/// The desktop's own font; `size` is its height in points as a designer gives it.
[[nodiscard]] QFont font(int size, QFont::Weight weight);

/// The colours of a filled shape.
struct Fill {
    QBrush background;
    QColor border;
};

/// A rounded rectangle with a line inside its edge. The ends of a capsule are round: half its height.
void paintRounded(QPainter &painter, const QRectF &rect, double radius, const Fill &fill);

/// The text in one line, centred in the rectangle, cut off with an ellipsis where it does not fit.
void paintLabel(QPainter &painter, const QRectF &rect, const QString &text, const QFont &font, const QColor &color);

/// How much of a control without a bezel is seen while it is held down.
inline constexpr double pressedOpacity = 0.65;

} // namespace lumenfold::facestyle
