#include "cards/PanOverlay.h"

#include <QMouseEvent>
#include <QPointer>

namespace lumenfold {

PanOverlayView::PanOverlayView(const Screens &screens, QWidget *parent) : QWidget(parent), m_drag(screens)
{
    // Movements without a button tell that a release went elsewhere.
    setMouseTracking(true);
}

PanOverlayView::~PanOverlayView() = default;

void PanOverlayView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_drag.begin(event->globalPosition());
    if (const auto callback = m_overlay.onBegan) {
        callback();
    }
}

void PanOverlayView::mouseDoubleClickEvent(QMouseEvent *event)
{
    const QPointer self(this);
    mousePressEvent(event);
    if (event->button() != Qt::LeftButton || !self) {
        return;
    }
    if (const auto callback = m_overlay.onDoubleClick) {
        callback();
    }
}

void PanOverlayView::mouseMoveEvent(QMouseEvent *event)
{
    const auto translation = m_drag.translationTo(event->globalPosition());
    if (!translation) {
        event->ignore();
    } else if (!event->buttons().testFlag(Qt::LeftButton)) {
        // Somebody else got the release.
        endDrag();
    } else if (const auto callback = m_overlay.onChanged) {
        callback(*translation);
    }
}

void PanOverlayView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        endDrag();
    }
}

void PanOverlayView::hideEvent(QHideEvent *event)
{
    endDrag();
    QWidget::hideEvent(event);
}

void PanOverlayView::endDrag()
{
    if (!m_drag.isActive()) {
        return;
    }
    m_drag.end();
    if (const auto callback = m_overlay.onEnded) {
        callback();
    }
}

} // namespace lumenfold
