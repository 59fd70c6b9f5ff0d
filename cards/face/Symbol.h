#pragma once

#include <QColor>
#include <QPointF>

class QPainter;

namespace lumenfold {

/// The program's own little pictures; each is drawn in one colour.
enum class Symbol { xmark, pinFill, chevronUp, chevronDown, checkmarkCircleFill };

/// Paints the symbol as large as a letter of `pointSize` points would be, centred on the point and sharp on every
/// screen. Each size and colour is rendered once.
void paintSymbol(QPainter &painter, Symbol symbol, QPointF center, double pointSize, const QColor &color);

} // namespace lumenfold
