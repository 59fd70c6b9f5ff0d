#include "cards/face/FaceStyle.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QPen>

namespace lumenfold::facestyle {

QFont font(int size, QFont::Weight weight)
{
    QFont font = QGuiApplication::font();
    font.setPixelSize(size);
    font.setWeight(weight);
    return font;
}

void paintRounded(QPainter &painter, const QRectF &rect, double radius, const Fill &fill)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill.background);
    painter.drawRoundedRect(rect, radius, radius);
    const double inset = borderWidth / 2;
    painter.setPen(QPen(fill.border, borderWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
    painter.restore();
}

void paintLabel(QPainter &painter, const QRectF &rect, const QString &text, const QFont &font, const QColor &color)
{
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(rect, Qt::AlignCenter | Qt::TextSingleLine,
                     QFontMetricsF(font).elidedText(text, Qt::ElideRight, rect.width()));
}

} // namespace lumenfold::facestyle
