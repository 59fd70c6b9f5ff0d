#include "platform/panels/PanelWindow.h"

#include "platform/panels/PaintingTurns.h"
#include "platform/panels/PanelContentShape.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMoveEvent>
#include <QTimer>
#include <QTransform>
#include <QWindow>

#include <chrono>
#include <cmath>

namespace lumenfold {
namespace {

/// With these pixels on their way to the server, a compositing manager waits for longer than it needs to show the
/// window's background.
constexpr std::chrono::milliseconds paintingDelay{40};

Qt::WindowFlags flagsFor(PanelKeyPolicy policy)
{
    const Qt::WindowFlags flags = Qt::Window | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint |
                                  Qt::NoDropShadowWindowHint | Qt::WindowStaysOnTopHint;
    return policy == PanelKeyPolicy::never ? flags | Qt::WindowDoesNotAcceptFocus : flags;
}

/// Assistive technologies look for what is a window; any other widget is a mere container to them.
QAccessibleInterface *accessibleWindow(const QString &, QObject *object)
{
    auto *window = qobject_cast<PanelWindow *>(object);
    return window != nullptr ? new QAccessibleWidget(window, QAccessible::Window) : nullptr;
}

} // namespace

PanelWindow::PanelWindow(const PanelOptions &options, PaintingTurns &turns)
    : QWidget(nullptr, flagsFor(options.keyPolicy)), m_turns(turns), m_transparentMargin(options.transparentMargin)
{
    [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(accessibleWindow), true);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(options.title);
    // The toolkit makes every window one that could show OpenGL, and loads the driver for it.
    setAttribute(Qt::WA_NativeWindow);
    if (QWindow *handle = windowHandle()) {
        handle->setSurfaceType(QSurface::RasterSurface);
    }
    takeOverNativeWindow();
}

void PanelWindow::setContent(std::unique_ptr<QWidget> view)
{
    if (m_content) {
        // It may be in the middle of an event that made its owner replace it.
        m_content->hide();
        m_content->deleteLater();
    }
    m_content = view.release();
    if (m_content) {
        m_content->setParent(this);
        m_content->setGeometry(rect());
        m_content->show();
    }
}

PanelWindow::LayOut PanelWindow::layOut(const QRect &place)
{
    LayOut outcome = LayOut::same;
    if (geometry() != place) {
        setGeometry(place);
        outcome = LayOut::changed;
    }
    // Otherwise the widget would do it while it is shown, and undo what was asked for in pixels meanwhile.
    if (QWindow *handle = windowHandle(); handle != nullptr && handle->geometry() != place) {
        handle->setGeometry(place);
        outcome = LayOut::changed;
    }
    // A hidden window's view is not told before it is shown, and is asked for its shape before that.
    if (m_content) {
        m_content->setGeometry(rect());
    }
    return outcome;
}

QRegion PanelWindow::contentShape() const
{
    if (const auto *shaped = dynamic_cast<const PanelContentShape *>(m_content.data())) {
        return shaped->opaqueShape(devicePixelRatio());
    }
    const auto toPixels = QTransform::fromScale(devicePixelRatio(), devicePixelRatio());
    if (m_content && !m_content->mask().isEmpty()) {
        return toPixels.map(m_content->mask());
    }
    const auto margin = static_cast<int>(std::floor(m_transparentMargin));
    return toPixels.map(QRegion(rect().marginsRemoved({margin, margin, margin, margin})));
}

std::optional<QRegion> PanelWindow::pointerShape() const
{
    const auto *shaped = dynamic_cast<const PanelContentShape *>(m_content.data());
    return shaped != nullptr ? std::optional(shaped->pointerShape()) : std::nullopt;
}

void PanelWindow::showBeforePainting()
{
    setUpdatesEnabled(false);
    if (m_content) {
        m_content->installEventFilter(this);
    }
    show();
    QTimer::singleShot(paintingDelay, this, &PanelWindow::startPainting);
}

void PanelWindow::startPainting()
{
    if (m_content) {
        m_content->removeEventFilter(this);
    }
    setUpdatesEnabled(true);
}

void PanelWindow::takeOverNativeWindow()
{
    QWindow *handle = windowHandle();
    if (handle == nullptr) {
        return;
    }
    // As long as a native window is new, the toolkit takes it to have no frame. It keeps what it learns then, and asks
    // the server no more.
    handle->removeEventFilter(this);
    QMoveEvent here(handle->position(), handle->position());
    QCoreApplication::sendEvent(handle, &here);
    handle->installEventFilter(this);
}

bool PanelWindow::nativeWindowEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
        // The toolkit would ask the server each time, and wait for it three times, how wide the frame is that a window
        // manager has put around the window; and it would paint a window that was resized at once, however many wait.
        m_isPaintingDue = m_isPaintingDue || size() != windowHandle()->size();
        setGeometry(windowHandle()->geometry());
        return true;
    case QEvent::Expose:
        if (!m_isPaintingDue || !windowHandle()->isExposed() || !updatesEnabled()) {
            return false;
        }
        // All of it is painted when its turn comes. The toolkit does not ask for that again when it was asked before
        // the window was on the screen.
        setAttribute(Qt::WA_Mapped);
        update();
        m_turns.paint(*this);
        return true;
    default:
        return false;
    }
}

bool PanelWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == windowHandle()) {
        return nativeWindowEvent(event);
    }
    if (event->type() == QEvent::MouseButtonPress) {
        startPainting();
    }
    return QWidget::eventFilter(watched, event);
}

void PanelWindow::paintNow()
{
    // What is not on the screen yet is not painted.
    m_isPaintingDue = m_isPaintingDue && !testAttribute(Qt::WA_Mapped);
    m_isItsTurn = true;
    QEvent request(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(this, &request);
    m_isItsTurn = false;
}

void PanelWindow::replaceNativeWindow()
{
    const bool wasVisible = isVisible();
    hide();
    destroy();
    if (wasVisible) {
        show();
    }
}

bool PanelWindow::event(QEvent *event)
{
    if (event->type() == QEvent::UpdateRequest) {
        if (!m_isItsTurn) {
            m_turns.paint(*this);
            return true;
        }
        Q_EMIT aboutToPaint();
    }
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::WinIdChange) {
        takeOverNativeWindow();
        Q_EMIT nativeWindowChanged();
    }
    return handled;
}

void PanelWindow::showEvent(QShowEvent *event)
{
    m_isPaintingDue = true;
    QWidget::showEvent(event);
}

void PanelWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (m_content) {
        m_content->setGeometry(rect());
    }
}

void PanelWindow::keyPressEvent(QKeyEvent *event)
{
    Q_EMIT keyPressed(event->nativeScanCode(), event->nativeModifiers());
}

void PanelWindow::closeEvent(QCloseEvent *event)
{
    event->ignore();
}

} // namespace lumenfold
