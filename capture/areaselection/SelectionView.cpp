#include "capture/areaselection/SelectionView.h"

#include "app/configuration/Palette.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QtMath>

#include <algorithm>
#include <utility>

namespace lumenfold {
namespace {

constexpr double outlineWidth = 1.5;
/// From the selection's top right corner to the label's bottom left one, in both directions.
constexpr double labelDistance = 6;

/// The pixels that lie in `rect` with their whole width and height.
QRect wholePixels(const QRectF &rect)
{
    const int left = qCeil(rect.left());
    const int top = qCeil(rect.top());
    return {left, top, std::max(0, qFloor(rect.right()) - left), std::max(0, qFloor(rect.bottom()) - top)};
}

} // namespace

QColor SelectionView::dimming()
{
    return QColor::fromRgbF(0, 0, 0, 0.35F);
}

SelectionView::SelectionView(Options options)
    : m_screenSize(options.screenSize)
    , m_backdrop(std::move(options.backdrop))
    , m_snapEdges(std::move(options.snapEdges))
{
    setAccessibleName(tr("Area selection"));
    setAccessibleDescription(tr("Drag to select an area of the screen. Escape or a right click cancels."));
    setAutoFillBackground(false);
    // paintEvent writes every pixel, the transparent ones too, so nothing need be cleared before it: on a large screen
    // that is time the user waits for.
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void SelectionView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::RightButton) {
        Q_EMIT cancelled();
        return;
    }
    if (event->button() != Qt::LeftButton) {
        return;
    }
    const std::optional<Rect> before = m_drag.currentRect();
    m_drag.begin(viewPoint(*event), m_snapEdges(), m_screenSize);
    repaintChange(before, m_drag.currentRect());
}

void SelectionView::mouseMoveEvent(QMouseEvent *event)
{
    const std::optional<Rect> before = m_drag.currentRect();
    m_drag.drag(viewPoint(*event));
    repaintChange(before, m_drag.currentRect());
}

void SelectionView::mouseReleaseEvent(QMouseEvent *event)
{
    // A release without a press belongs to a press made before the overlay was there.
    if (event->button() != Qt::LeftButton || !m_drag.startPoint()) {
        return;
    }
    const std::optional<Rect> before = m_drag.currentRect();
    const std::optional<Rect> rect = m_drag.end();
    repaintChange(before, std::nullopt);
    if (rect) {
        Q_EMIT selected(*rect);
    } else {
        Q_EMIT clicked();
    }
}

void SelectionView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    const std::optional<Rect> &selection = m_drag.currentRect();
    if (!selection) {
        paintDimming(painter, event->region());
        return;
    }
    const QRectF hole = toolkitRect(*selection);
    paintDimming(painter, event->region().subtracted(wholePixels(hole)));
    paintHole(painter, hole);

    QPen outline(palette::accentPrimary, outlineWidth);
    outline.setJoinStyle(Qt::MiterJoin);
    painter.setPen(outline);
    painter.setBrush(Qt::NoBrush);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawRect(hole);
    painter.setRenderHint(QPainter::Antialiasing, false);
    m_label.paint(painter, labelRect(*selection).topLeft(), selectionLabelText(selection->size()));
}

void SelectionView::paintDimming(QPainter &painter, const QRegion &region) const
{
    for (const QRect &part : region) {
        if (m_backdrop.isNull()) {
            painter.setCompositionMode(QPainter::CompositionMode_Source);
        } else {
            paintBackdrop(painter, part);
        }
        painter.fillRect(part, dimming());
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    }
}

void SelectionView::paintHole(QPainter &painter, const QRectF &hole) const
{
    if (!m_backdrop.isNull()) {
        paintBackdrop(painter, hole);
        return;
    }
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(hole, Qt::transparent);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void SelectionView::paintBackdrop(QPainter &painter, const QRectF &part) const
{
    const double across = m_backdrop.width() / m_screenSize.width;
    const double down = m_backdrop.height() / m_screenSize.height;
    const QRectF source(part.x() * across, part.y() * down, part.width() * across, part.height() * down);
    painter.drawImage(part, m_backdrop, source);
}

Point SelectionView::viewPoint(const QMouseEvent &event) const
{
    // In the window, which the view fills: the toolkit rounds the position in a view inside a window to whole points,
    // and a pixel may be half a point.
    const QPointF position = event.scenePosition();
    return {position.x(), m_screenSize.height - position.y()};
}

QRectF SelectionView::toolkitRect(const Rect &rect) const
{
    return {rect.x, m_screenSize.height - rect.maxY(), rect.width, rect.height};
}

QRectF SelectionView::labelRect(const Rect &selection) const
{
    const QSizeF size = m_label.size(selectionLabelText(selection.size()));
    return {selection.maxX() + labelDistance, m_screenSize.height - (selection.maxY() + labelDistance) - size.height(),
            size.width(), size.height()};
}

/// Where the selection's outline and label are.
QRegion SelectionView::markRegion(const std::optional<Rect> &selection) const
{
    if (!selection) {
        return {};
    }
    const QRectF hole = toolkitRect(*selection);
    constexpr double reach = outlineWidth / 2 + 1; // one more for the smoothed edge
    const QRegion outside = hole.adjusted(-reach, -reach, reach, reach).toAlignedRect();
    const QRegion outline = outside.subtracted(wholePixels(hole.adjusted(reach, reach, -reach, -reach)));
    return outline.united(labelRect(*selection).toAlignedRect());
}

void SelectionView::repaintChange(const std::optional<Rect> &before, const std::optional<Rect> &after)
{
    if (before == after) {
        return;
    }
    const QRegion holeBefore = before ? wholePixels(toolkitRect(*before)) : QRect();
    const QRegion holeAfter = after ? wholePixels(toolkitRect(*after)) : QRect();
    update(holeBefore.xored(holeAfter).united(markRegion(before)).united(markRegion(after)));
}

} // namespace lumenfold
