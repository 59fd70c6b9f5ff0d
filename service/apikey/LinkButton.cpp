#include "service/apikey/LinkButton.h"

#include "app/theme/Symbol.h"

#include <QPainter>
#include <QStyleOptionFocusRect>

#include <cmath>

namespace lumenfold {
namespace {

/// Points. Above and below, for the line around whoever has the focus; the words begin where all others do.
constexpr int linkPadding = 2;
constexpr int iconSpacing = 5;

/// As large as a letter of the font.
int iconSide(const QFontMetrics &metrics)
{
    return metrics.ascent();
}

} // namespace

LinkButton::LinkButton(const QString &text, QWidget *parent) : QAbstractButton(parent)
{
    setText(text);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize LinkButton::sizeHint() const
{
    const QFontMetrics metrics(font());
    return {metrics.horizontalAdvance(text()) + iconSpacing + iconSide(metrics), metrics.height() + 2 * linkPadding};
}

QSize LinkButton::minimumSizeHint() const
{
    return sizeHint();
}

void LinkButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QFontMetrics metrics(font());
    const QColor color = palette().color(isDown() ? QPalette::LinkVisited : QPalette::Link);
    QFont underlined = font();
    underlined.setUnderline(underMouse() || hasFocus());
    painter.setFont(underlined);
    painter.setPen(color);
    const QRect words(0, linkPadding, metrics.horizontalAdvance(text()), metrics.height());
    const int side = iconSide(metrics);
    QRect icon(words.right() + 1 + iconSpacing, 0, side, side);
    icon.moveCenter({icon.center().x(), words.center().y()});
    // Where one reads to the left, the symbol stands to the left.
    painter.drawText(QStyle::visualRect(layoutDirection(), rect(), words), Qt::AlignCenter, text());
    const QRectF shown = QStyle::visualRect(layoutDirection(), rect(), icon);
    paintSymbol(painter, Symbol::arrowUpRightSquare, shown.center(), side * 0.85, color);
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}

} // namespace lumenfold
