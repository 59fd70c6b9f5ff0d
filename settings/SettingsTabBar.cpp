#include "settings/SettingsTabBar.h"

#include "app/theme/WindowTheme.h"

#include <QEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

#include <algorithm>
#include <cmath>

namespace lumenfold {
namespace {

// Points.
constexpr double symbolPointSize = 15;
constexpr int symbolHeight = 20;
constexpr int symbolSpacing = 1;
constexpr int horizontalPadding = 12;
constexpr int verticalPadding = 4;
constexpr int minimumTabWidth = 76;
constexpr double cornerRadius = 6;
/// Between the grounds of two tabs.
constexpr int gap = 2;

constexpr double labelShare = 0.88;

QColor veil(const QPalette &palette, double opacity)
{
    QColor color = palette.color(QPalette::WindowText);
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

} // namespace

SettingsTabBar::SettingsTabBar(QWidget *parent) : QTabBar(parent)
{
    setDrawBase(false);
    setExpanding(false);
    setUsesScrollButtons(false);
    setElideMode(Qt::ElideNone);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    // Tabs lighten up under the pointer.
    setMouseTracking(true);
    setAttribute(Qt::WA_Hover);
}

void SettingsTabBar::addPage(Symbol symbol, const QString &label)
{
    m_symbols.push_back(symbol);
    addTab(label);
}

QFont SettingsTabBar::labelFont() const
{
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * labelShare);
    return small;
}

QSize SettingsTabBar::tabSizeHint(int index) const
{
    const QFontMetrics metrics(labelFont());
    const int words = metrics.horizontalAdvance(tabText(index)) + 2 * (horizontalPadding + gap);
    return {std::max(minimumTabWidth, words), symbolHeight + symbolSpacing + metrics.height() + 2 * verticalPadding};
}

void SettingsTabBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(labelFont());
    for (int index = 0; index < count(); ++index) {
        paintTab(painter, index);
    }
}

void SettingsTabBar::paintTab(QPainter &painter, int index) const
{
    constexpr double selectedOpacity = 0.1;
    constexpr double hoveredOpacity = 0.05;
    const QRect ground = tabRect(index).adjusted(gap, 0, -gap, 0);
    const bool isSelected = index == currentIndex();
    const bool isHovered = underMouse() && tabRect(index).contains(mapFromGlobal(QCursor::pos()));
    if (isSelected || isHovered) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(veil(palette(), isSelected ? selectedOpacity : hoveredOpacity));
        painter.drawRoundedRect(ground, cornerRadius, cornerRadius);
    }
    if (isSelected && hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRoundedRect(QRectF(ground).adjusted(1, 1, -1, -1), cornerRadius, cornerRadius);
    }
    const QColor color = isSelected ? palette().color(QPalette::WindowText) : secondaryText(palette());
    const QPointF symbolCenter(QRectF(ground).center().x(), ground.top() + verticalPadding + symbolHeight / 2.0);
    paintSymbol(painter, m_symbols.at(static_cast<std::size_t>(index)), symbolCenter, symbolPointSize, color);
    painter.setPen(color);
    painter.drawText(ground.adjusted(0, verticalPadding + symbolHeight + symbolSpacing, 0, -verticalPadding),
                     Qt::AlignHCenter | Qt::AlignVCenter, tabText(index));
}

void SettingsTabBar::changeEvent(QEvent *event)
{
    QTabBar::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        updateGeometry();
    }
}

} // namespace lumenfold
