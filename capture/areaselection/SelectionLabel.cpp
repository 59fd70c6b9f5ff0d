#include "capture/areaselection/SelectionLabel.h"

#include "app/configuration/Palette.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace lumenfold {

QString selectionLabelText(Size selection)
{
    return QStringLiteral("%1 \u00D7 %2")
        .arg(QString::number(std::trunc(selection.width), 'f', 0),
             QString::number(std::trunc(selection.height), 'f', 0));
}

SelectionLabel::SelectionLabel() : m_font(QFontDatabase::systemFont(QFontDatabase::GeneralFont))
{
    constexpr int pointsHigh = 11; // one point is one of the toolkit's logical pixels
    m_font.setPixelSize(pointsHigh);
    m_font.setWeight(QFont::Medium);
    const QFontMetricsF metrics(m_font);
    for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
        m_digitAdvance = std::max(m_digitAdvance, metrics.horizontalAdvance(QChar(digit)));
    }
    m_ascent = metrics.ascent();
    m_height = metrics.ascent() + metrics.descent();
}

QSizeF SelectionLabel::size(const QString &text) const
{
    double width = 0;
    for (const QChar character : text) {
        width += advance(character);
    }
    return {std::ceil(width), std::ceil(m_height)};
}

void SelectionLabel::paint(QPainter &painter, QPointF topLeft, const QString &text) const
{
    painter.fillRect(QRectF(topLeft, size(text)), palette::accentPrimary);
    painter.setFont(m_font);
    painter.setPen(Qt::white);
    const QFontMetricsF metrics(m_font);
    double x = topLeft.x();
    for (const QChar character : text) {
        const double room = advance(character);
        const double inset = (room - metrics.horizontalAdvance(character)) / 2;
        painter.drawText(QPointF(x + inset, topLeft.y() + m_ascent), QString(character));
        x += room;
    }
}

double SelectionLabel::advance(QChar character) const
{
    return character.isDigit() ? m_digitAdvance : QFontMetricsF(m_font).horizontalAdvance(character);
}

} // namespace lumenfold
