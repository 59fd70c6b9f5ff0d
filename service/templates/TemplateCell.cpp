#include "service/templates/TemplateCell.h"

#include "app/configuration/Palette.h"
#include "app/theme/Symbol.h"
#include "app/theme/WindowTheme.h"

#include <QBrush>
#include <QFontMetrics>
#include <QPainter>
#include <QPen>

#include <cmath>

namespace lumenfold {
namespace {

constexpr double boxRadius = 8;
/// Between the box's edge and the picture.
constexpr int pictureInset = 6;
constexpr double pictureRadius = 3;
constexpr int nameGap = 6;
constexpr double selectionWidth = 2;
constexpr double focusWidth = 2;
/// Between a cell's box and the ring around it.
constexpr double focusGap = 2;
constexpr double badgePointSize = 16;
constexpr double badgeInset = 15;
constexpr double placeholderPointSize = 24;

int boxHeight(int width)
{
    return width * 2 / 3;
}

QColor withOpacity(QColor color, double opacity)
{
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

void paintRing(QPainter &painter, const QRectF &rect, double radius, const QColor &color, double width)
{
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect, radius, radius);
}

/// In the middle of the box, pixel for pixel where it was scaled for it.
void paintPicture(QPainter &painter, const QImage &picture, const QRect &box)
{
    const double scale = painter.device()->devicePixelRatioF();
    const QSizeF room = QSizeF(box.size()) * scale;
    const bool isTooLarge = picture.width() > room.width() || picture.height() > room.height();
    const QSizeF pixels = isTooLarge ? QSizeF(picture.size()).scaled(room, Qt::KeepAspectRatio) : picture.size();
    const QPointF corner(std::round(box.x() * scale + (room.width() - pixels.width()) / 2),
                         std::round(box.y() * scale + (room.height() - pixels.height()) / 2));
    const QRectF target(corner / scale, pixels / scale);
    QBrush brush(picture);
    QTransform transform = QTransform::fromTranslate(target.x(), target.y());
    transform.scale(target.width() / picture.width(), target.height() / picture.height());
    brush.setTransform(transform);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, isTooLarge);
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(target, pictureRadius, pictureRadius);
}

void paintBadge(QPainter &painter, QPointF center)
{
    // The mark in the symbol is cut out; it is white on any picture.
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawEllipse(center, badgePointSize * 0.6, badgePointSize * 0.6);
    paintSymbol(painter, Symbol::checkmarkCircleFill, center, badgePointSize, palette::accentPrimary);
}

} // namespace

int TemplateCell::height(int width, const QFont &font)
{
    return boxHeight(width) + nameGap + QFontMetrics(font).height();
}

QRect TemplateCell::pictureBox(const QRect &cell)
{
    return QRect(cell.topLeft(), QSize(cell.width(), boxHeight(cell.width())))
        .adjusted(pictureInset, pictureInset, -pictureInset, -pictureInset);
}

bool TemplateCell::isCutOff(const QString &name, int width, const QFont &font)
{
    return QFontMetrics(font).horizontalAdvance(name) > width;
}

void TemplateCell::paint(QPainter &painter, const QRect &cell, const QFont &font, const QPalette &palette) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box(cell.x(), cell.y(), cell.width(), boxHeight(cell.width()));
    const QColor text = palette.color(QPalette::WindowText);
    painter.setPen(Qt::NoPen);
    painter.setBrush(withOpacity(text, isHovered ? 0.11 : 0.06));
    painter.drawRoundedRect(box, boxRadius, boxRadius);
    if (picture.isNull()) {
        paintSymbol(painter, Symbol::photo, box.center(), placeholderPointSize, withOpacity(text, 0.35));
    } else {
        paintPicture(painter, picture, pictureBox(cell));
    }
    if (isSelected) {
        const double inset = selectionWidth / 2;
        paintRing(painter, box.adjusted(inset, inset, -inset, -inset), boxRadius - inset, palette::accentPrimary,
                  selectionWidth);
        paintBadge(painter, {box.right() - badgeInset, box.top() + badgeInset});
    } else {
        paintRing(painter, box.adjusted(0.5, 0.5, -0.5, -0.5), boxRadius - 0.5, withOpacity(text, 0.12), 1);
    }
    if (hasFocus) {
        const double outset = focusGap + focusWidth / 2;
        paintRing(painter, box.adjusted(-outset, -outset, outset, outset), boxRadius + outset, palette::accentPrimary,
                  focusWidth);
    }
    const QFontMetrics metrics(font);
    const QRect line(cell.x(), cell.bottom() + 1 - metrics.height(), cell.width(), metrics.height());
    painter.setFont(font);
    painter.setPen(isSelected || isHovered ? text : secondaryText(palette));
    painter.drawText(line, Qt::AlignCenter | Qt::TextSingleLine,
                     metrics.elidedText(name, Qt::ElideRight, line.width()));
    painter.restore();
}

} // namespace lumenfold
