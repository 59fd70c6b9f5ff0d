#include "app/theme/SymbolView.h"

#include <QPainter>

#include <cmath>

namespace lumenfold {

SymbolView::SymbolView(Symbol symbol, double pointSize, QWidget *parent)
    : QWidget(parent), m_symbol(symbol), m_pointSize(pointSize)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolView::setColor(const QColor &color)
{
    m_color = color;
    update();
}

QSize SymbolView::sizeHint() const
{
    const int side = static_cast<int>(std::ceil(drawnSide(m_pointSize)));
    return {side, side};
}

void SymbolView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QColor color = m_color.isValid() ? m_color : palette().color(QPalette::WindowText);
    paintSymbol(painter, m_symbol, QRectF(rect()).center(), m_pointSize, color);
}

} // namespace lumenfold
