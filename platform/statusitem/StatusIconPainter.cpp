#include "platform/statusitem/StatusIconPainter.h"

#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>

namespace lumenfold {
namespace {

/// Points; of the place that the measures below belong to.
constexpr double canonicalSide = 22;
constexpr double badgeDiameter = 7;
constexpr double badgeInset = 3;
constexpr double badgeRing = 1;
/// The system's orange.
constexpr QColor badgeColor{255, 149, 0};

void paintBadge(QPainter &painter, int side)
{
    const BadgePlacement badge = badgePlacement(side);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawEllipse(badge.circle);
    painter.setBrush(badgeColor);
    painter.drawEllipse(badge.circle.adjusted(badge.ringWidth, badge.ringWidth, -badge.ringWidth, -badge.ringWidth));
}

/// `length` of the view box' canonical points, in units of the drawing.
QByteArray units(const QRectF &viewBox, double length)
{
    return QByteArray::number(length * viewBox.width() / canonicalSide, 'g', 5);
}

QByteArray circle(const QRectF &viewBox, double radius, const QColor &color)
{
    constexpr double fromEdge = badgeInset + badgeDiameter / 2;
    // An ellipse, because the desktops that colour pictures colour every <circle>.
    return "<ellipse cx=\"" + units(viewBox, canonicalSide - fromEdge) + "\" cy=\"" + units(viewBox, fromEdge) +
           "\" rx=\"" + units(viewBox, radius) + "\" ry=\"" + units(viewBox, radius) + "\" fill=\"" +
           color.name().toLatin1() + "\"/>";
}

} // namespace

BadgePlacement badgePlacement(int side)
{
    const double scale = side / canonicalSide;
    const auto pixels = [scale](double points) { return std::max(1, static_cast<int>(std::lround(points * scale))); };
    const int diameter = pixels(badgeDiameter);
    const int inset = pixels(badgeInset);
    return {.circle = QRect(side - inset - diameter, inset, diameter, diameter), .ringWidth = pixels(badgeRing)};
}

QImage paintStatusIcon(const StatusIcon &icon, int side, const QColor &templateColor)
{
    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QSvgRenderer drawing(icon.image.drawing);
    QPainter painter(&picture);
    if (drawing.isValid()) {
        drawing.render(&painter);
    }
    if (icon.image.isTemplate) {
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(picture.rect(), templateColor);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    }
    if (icon.hasBadge) {
        paintBadge(painter, side);
    }
    return picture;
}

QByteArray symbolicDrawing(const StatusIcon &icon, const QColor &templateColor)
{
    const QRectF viewBox = QSvgRenderer(icon.image.drawing).viewBoxF();
    QByteArray drawing = icon.image.drawing;
    const qsizetype afterRoot = drawing.indexOf('>', drawing.indexOf("<svg")) + 1;
    const qsizetype end = drawing.lastIndexOf("</svg>");
    if (viewBox.isEmpty() || afterRoot <= 0 || end < afterRoot) {
        return {};
    }
    if (icon.hasBadge) {
        drawing.insert(end, circle(viewBox, badgeDiameter / 2, Qt::black) +
                                circle(viewBox, badgeDiameter / 2 - badgeRing, badgeColor));
    }
    if (icon.image.isTemplate) {
        // KDE's desktops put a style sheet of their own in place of this one; others colour every path.
        drawing.replace("fill=\"#000\"", "fill=\"currentColor\" class=\"ColorScheme-Text\"");
        drawing.insert(afterRoot, "<style id=\"current-color-scheme\" type=\"text/css\">.ColorScheme-Text{color:" +
                                      templateColor.name().toLatin1() + "}</style>");
    }
    return drawing;
}

} // namespace lumenfold
