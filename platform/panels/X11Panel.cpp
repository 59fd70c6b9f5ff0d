#include "platform/panels/X11Panel.h"

#include "platform/panels/PanelStage.h"
#include "platform/panels/PixelFrame.h"
#include "platform/x11/QtWindows.h"

#include <QCursor>
#include <QDebug>
#include <QMetaObject>
#include <QTransform>

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumenfold {
namespace {

double scaleAt(const ScreenSpace &space, const Rect &frame)
{
    const auto *screen = space.screenOf(frame);
    return screen == nullptr ? 1 : screen->scale;
}

} // namespace

X11Panel::X11Panel(PanelStage &stage, PanelOptions options, const Rect &frame)
    : m_stage(stage)
    , m_options(std::move(options))
    , m_motion(frame)
    , m_window(std::make_unique<PanelWindow>(m_options, m_stage.paintingTurns()))
{
    connect(m_window.get(), &PanelWindow::nativeWindowChanged, this, &X11Panel::nativeWindowChanged);
    connect(m_window.get(), &PanelWindow::aboutToPaint, this, &X11Panel::syncShape);
    connect(m_window.get(), &PanelWindow::keyPressed, this, &X11Panel::toolkitKeyPressed);
    m_stage.enter(*this);
    m_stage.changed(*this);
}

X11Panel::~X11Panel()
{
    orderOut();
    m_window->disconnect(this);
    m_stage.leave(*this, std::move(m_window));
}

void X11Panel::setContentView(std::unique_ptr<QWidget> view)
{
    m_window->setContent(std::move(view));
}

void X11Panel::setFrame(const Rect &frame)
{
    m_motion.setFrame(frame);
    m_stage.changed(*this);
}

void X11Panel::setAlpha(double alpha)
{
    m_motion.setAlpha(std::clamp(alpha, 0.0, 1.0));
    m_stage.changed(*this);
}

void X11Panel::animate(PanelAnimation animation)
{
    if (animation.alpha) {
        animation.alpha = std::clamp(*animation.alpha, 0.0, 1.0);
    }
    m_motion.animate(std::move(animation), PanelMotion::TimePoint::clock::now());
    m_stage.startClock();
}

void X11Panel::orderFrontRegardless()
{
    m_visible = true;
    // Makes the native window if there is none yet.
    m_stage.orderFront(static_cast<std::uint32_t>(m_window->winId()), m_options.level);
    syncMapping();
    if (m_keysNeedFocus && !m_focus) {
        takeFocus();
    }
    m_stage.changed(*this);
}

void X11Panel::orderOut()
{
    m_stage.keyboard().takeFrom(this);
    m_keysNeedFocus = false;
    m_focus.reset();
    if (!m_visible) {
        return;
    }
    m_visible = false;
    syncMapping();
    m_stage.orderOut(m_native);
    m_stage.server().flush();
}

void X11Panel::makeKey()
{
    if (m_options.keyPolicy == PanelKeyPolicy::never) {
        return;
    }
    const auto grip = m_stage.keyboard().give(this, [this](const KeyEvent &event) { keyPressed(event); });
    m_keysNeedFocus = grip == PanelKeyboard::Grip::refused;
    if (m_keysNeedFocus) {
        qInfo().noquote().nospace()
            << "LumenFold panels: the keyboard cannot be watched now, the panel takes the focus instead";
        if (m_visible) {
            takeFocus();
        }
    }
}

void X11Panel::takeFocus()
{
    m_focus.emplace(x11::qtConnection());
    m_window->activateWindow();
}

void X11Panel::setKeyHandler(std::function<bool(const KeyEvent &)> handler)
{
    m_keyHandler = std::move(handler);
}

void X11Panel::setCursor(CursorShape shape)
{
    m_window->setCursor(shape == CursorShape::crosshair ? Qt::CrossCursor : Qt::ArrowCursor);
}

void X11Panel::commit()
{
    if (!std::exchange(m_changed, false)) {
        return;
    }
    syncMapping();
    syncPlace();
    syncOpacity();
}

bool X11Panel::advance(PanelMotion::TimePoint now, PanelMotion::Completions &completed)
{
    if (!m_motion.isMoving()) {
        return false;
    }
    m_motion.advance(now, completed);
    m_changed = true;
    return m_motion.isMoving();
}

void X11Panel::translucencyChanged()
{
    if (m_native != 0) {
        syncBackground();
    }
    syncMapping();
    syncOpacity();
    syncShape();
    // The view draws differently now: with or without its shadow.
    m_window->update();
    for (QWidget *child : m_window->findChildren<QWidget *>()) {
        child->update();
    }
}

void X11Panel::nativeWindowLost()
{
    QMetaObject::invokeMethod(m_window.get(), &PanelWindow::replaceNativeWindow, Qt::QueuedConnection);
}

void X11Panel::nativeWindowChanged()
{
    const auto native = static_cast<std::uint32_t>(m_window->internalWinId());
    if (native == m_native) {
        return;
    }
    if (m_native != 0) {
        m_stage.windowVanished(m_native);
    }
    m_native = native;
    m_pixels.reset();
    m_opacity.reset();
    m_shape.reset();
    m_pointerShape.reset();
    if (native == 0) {
        return;
    }
    const double margin = m_options.transparentMargin * scaleAt(m_stage.space(), frame());
    m_stage.windowAppeared(*this, native);
    m_stage.server().dress(native, static_cast<int>(std::lround(margin)));
    syncBackground();
    if (m_visible) {
        m_stage.orderFront(native, m_options.level);
        m_stage.changed(*this);
    }
}

void X11Panel::keyPressed(const KeyEvent &event)
{
    if (const auto handler = m_keyHandler) {
        handler(event);
    }
}

void X11Panel::toolkitKeyPressed(std::uint32_t keycode, std::uint32_t state)
{
    if (const auto event = m_focus ? m_focus->keyDown(keycode, state) : std::nullopt) {
        keyPressed(*event);
    }
}

bool X11Panel::shouldBeMapped() const
{
    return m_visible && (m_stage.translucency() == Translucency::available || alpha() > 0);
}

void X11Panel::syncMapping()
{
    if (shouldBeMapped() == m_window->isVisible()) {
        return;
    }
    if (m_window->isVisible()) {
        unmap();
    } else {
        map();
    }
}

void X11Panel::map()
{
    m_window->winId();
    syncPlace();
    syncOpacity();
    syncShape();
    if (m_options.initialFill && m_stage.translucency() == Translucency::available) {
        syncBackground();
        m_window->showBeforePainting();
    } else {
        m_window->show();
    }
}

void X11Panel::unmap()
{
    if (m_stage.translucency() == Translucency::available) {
        // A compositor that fades windows out goes on showing what was in them; the server erases to the background.
        m_stage.server().setBackground(m_native, Translucency::available, Qt::transparent);
        m_stage.server().erase(m_native);
        m_stage.leftWithoutTrace(m_native);
    }
    m_window->hide();
}

void X11Panel::syncPlace()
{
    const ScreenSpace &space = m_stage.space();
    const QRect pixels = pixelFrame(space, frame(), m_motion.destinationOfMove());
    if (!m_window->isVisible()) {
        // The view is laid out before it is shown. A visible window's toolkit hears from the server where it is.
        const QSizeF points = QSizeF(pixels.size()) / scaleAt(space, frame());
        const QRect place(space.toQt(frame()).topLeft().toPoint(), points.toSize());
        if (m_window->layOut(place) == PanelWindow::LayOut::changed) {
            m_pixels.reset();
        }
    }
    if (m_native != 0 && m_pixels != pixels) {
        m_stage.server().place(m_native, m_pixels, pixels);
        m_pixels = pixels;
    }
}

void X11Panel::syncBackground()
{
    m_stage.server().setBackground(m_native, m_stage.translucency(), m_options.initialFill.value_or(Qt::transparent));
}

void X11Panel::syncOpacity()
{
    // Without a compositor nobody reads it; it is right when one comes.
    if (m_native != 0 && m_opacity != alpha()) {
        m_stage.server().setOpacity(m_native, alpha());
        m_opacity = alpha();
    }
}

void X11Panel::syncShape()
{
    if (m_native == 0) {
        return;
    }
    const double scale = m_window->devicePixelRatio();
    const auto toPixels = QTransform::fromScale(scale, scale);
    std::optional<QRegion> shape;
    if (m_stage.translucency() == Translucency::unavailable) {
        shape = m_window->contentShape();
    }
    if (shape != m_shape) {
        m_stage.server().setShape(m_native, PanelServer::Cut::whatIsSeen, shape);
        m_shape = shape;
    }
    std::optional<QRegion> pointerShape = m_window->pointerShape();
    if (pointerShape) {
        pointerShape = toPixels.map(*pointerShape);
    }
    if (pointerShape != m_pointerShape) {
        m_stage.server().setShape(m_native, PanelServer::Cut::whatGetsThePointer, pointerShape);
        m_pointerShape = pointerShape;
    }
}

} // namespace lumenfold
