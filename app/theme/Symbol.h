#pragma once

#include <QColor>
#include <QIcon>
#include <QPointF>

class QPainter;

namespace lumenfold {

/// The program's own little pictures; each is drawn in one colour.
enum class Symbol {
    xmark,
    xmarkCircleFill,
    pinFill,
    chevronUp,
    chevronDown,
    checkmarkCircleFill,
    magnifyingGlass,
    photo,
    arrowUpRightSquare,
    exclamationmarkTriangleFill,
    gearshape,
    squareOnSquare,
    personCircle,
    arrowUturnBackward,
    folder,
    personCropCircleBadgeExclamationmark,
    checkmarkSealFill,
};

/// How wide and high the drawing of a symbol is, in points, that is as large as a letter of `pointSize` points: it
/// leaves room around the letter's height for what reaches beyond it.
[[nodiscard]] constexpr double drawnSide(double pointSize)
{
    constexpr double sidePerPointSize = 1.25;
    return pointSize * sidePerPointSize;
}

/// Paints the symbol as large as a letter of `pointSize` points would be, centred on the point and sharp on every
/// screen. Each size and colour is rendered once.
void paintSymbol(QPainter &painter, Symbol symbol, QPointF center, double pointSize, const QColor &color);

/// The symbol for controls that take an icon, `side` points wide and high, for screens of every scale.
[[nodiscard]] QIcon symbolIcon(Symbol symbol, int side, const QColor &color);

} // namespace lumenfold
