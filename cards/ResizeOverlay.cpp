#include "cards/ResizeOverlay.h"

#include "cards/ResizeCursor.h"
#include "platform/events/EventMonitors.h"

#include <QMouseEvent>
#include <QPointer>

#include <cmath>
#include <utility>

namespace lumenfold {

ResizeOverlayView::ResizeOverlayView(const Screens &screens, EventMonitors &monitors, QWidget *parent)
    : QWidget(parent), m_eventMonitors(monitors), m_drag(screens)
{
    // Movements without a button tell that a release went elsewhere.
    setMouseTracking(true);
    takeOnlyHotCorners();
}

ResizeOverlayView::~ResizeOverlayView() = default;

void ResizeOverlayView::apply(ResizeOverlay overlay)
{
    m_overlay = std::move(overlay);
    takeOnlyHotCorners();
}

QRegion ResizeOverlayView::hotRegion() const
{
    QRegion region;
    for (const auto &[corner, area] : resizeHotZones({double(width()), double(height())}, m_overlay.zones)) {
        const double top = height() - area.maxY();
        const QPoint from(static_cast<int>(std::floor(area.minX())), static_cast<int>(std::floor(top)));
        const QPoint to(static_cast<int>(std::ceil(area.maxX())), static_cast<int>(std::ceil(top + area.height)));
        // A rectangle of two corners holds both, as the zones hold their edges.
        region += QRect(from, to);
    }
    return region & rect();
}

void ResizeOverlayView::takeOnlyHotCorners()
{
    const QRegion region = hotRegion();
    // An empty mask would be none at all.
    setAttribute(Qt::WA_TransparentForMouseEvents, region.isEmpty());
    setMask(region);
}

std::optional<PreviewResizeCorner> ResizeOverlayView::cornerAt(QPointF position) const
{
    if (!rect().contains(position.toPoint())) {
        return std::nullopt;
    }
    return handleCorner({position.x(), height() - position.y()}, {double(width()), double(height())}, m_overlay.zones);
}

void ResizeOverlayView::mousePressEvent(QMouseEvent *event)
{
    const auto corner = event->button() == Qt::LeftButton ? cornerAt(event->position()) : std::nullopt;
    if (!corner) {
        event->ignore();
        return;
    }
    m_corner = *corner;
    m_drag.begin(event->globalPosition());
    if (const auto callback = m_overlay.onBegan) {
        callback(m_corner);
    }
    showCursorFor(m_corner);
}

void ResizeOverlayView::mouseMoveEvent(QMouseEvent *event)
{
    const auto translation = m_drag.translationTo(event->globalPosition());
    if (!translation) {
        event->ignore();
        return;
    }
    if (!event->buttons().testFlag(Qt::LeftButton)) {
        // Somebody else got the release.
        endDrag();
        return;
    }
    if (const auto callback = m_overlay.onChanged) {
        callback(m_corner, *translation);
    }
    // The window may have got another cursor while it changed its size.
    showCursorFor(m_corner);
}

void ResizeOverlayView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        endDrag();
    }
}

void ResizeOverlayView::enterEvent(QEnterEvent *event)
{
    QWidget::enterEvent(event);
    refreshCursorFromScreen();
}

void ResizeOverlayView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    takeOnlyHotCorners();
}

void ResizeOverlayView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_installed.clear();
    const auto handler = [self = QPointer(this)](const PointerEvent &) {
        if (self) {
            self->pointerMoved();
        }
    };
    constexpr std::uint32_t mask = eventMask(PointerEventType::mouseMoved);
    m_installed.push_back(m_eventMonitors.addLocalMonitor(mask, handler));
    m_installed.push_back(m_eventMonitors.addGlobalMonitor(mask, handler));
}

void ResizeOverlayView::hideEvent(QHideEvent *event)
{
    m_installed.clear();
    endDrag();
    QWidget::hideEvent(event);
}

void ResizeOverlayView::pointerMoved()
{
    // There may be many cards, and the place of the pointer is a question to the server.
    if (m_didSetResizeCursor || window()->underMouse()) {
        refreshCursorFromScreen();
    }
}

void ResizeOverlayView::refreshCursorFromScreen()
{
    if (m_drag.isActive() || !isVisible()) {
        return;
    }
    if (const auto corner = cornerAt(mapFromGlobal(QPointF(QCursor::pos())))) {
        showCursorFor(*corner);
    } else if (std::exchange(m_didSetResizeCursor, false)) {
        setCursor(Qt::ArrowCursor);
    }
}

void ResizeOverlayView::showCursorFor(PreviewResizeCorner corner)
{
    setCursor(resizeCursor(corner, devicePixelRatioF()));
    m_didSetResizeCursor = true;
}

void ResizeOverlayView::endDrag()
{
    if (!m_drag.isActive()) {
        return;
    }
    m_drag.end();
    if (const auto callback = m_overlay.onEnded) {
        callback();
    }
    setCursor(Qt::ArrowCursor);
    m_didSetResizeCursor = false;
}

} // namespace lumenfold
