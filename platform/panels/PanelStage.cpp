#include "platform/panels/PanelStage.h"

#include "platform/panels/PanelWindow.h"
#include "platform/panels/X11Panel.h"
#include "platform/x11/QtWindows.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <algorithm>
#include <utility>

namespace lumenfold {
namespace {

/// About once per picture of a 60 Hz screen.
constexpr std::chrono::milliseconds tickInterval{16};
constexpr std::uint8_t sentEvent = 0x80;

} // namespace

PanelStage::PanelStage(std::unique_ptr<x11::X11Connection> connection, KeyEventTapService &taps,
                       const X11Screens &screens, std::function<void(std::uint32_t)> onLeftWithoutTrace)
    : m_connection(std::move(connection))
    , m_screens(screens)
    , m_onLeftWithoutTrace(std::move(onLeftWithoutTrace))
    , m_server(x11::qtConnection())
    , m_keyboard(taps)
    , m_compositor(*m_connection)
    , m_keeper(*m_connection,
               [this](std::span<const std::uint32_t> windows, std::uint32_t above) { raiseAbove(windows, above); })
{
    m_clock.setTimerType(Qt::PreciseTimer);
    m_clock.setInterval(tickInterval);
    connect(&m_clock, &QTimer::timeout, this, &PanelStage::tick);
    connect(&m_compositor, &CompositorWatch::changed, this, &PanelStage::translucencyChanged);
    connect(&m_screens, &Screens::changed, this, &PanelStage::everythingMoved);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

PanelStage::~PanelStage()
{
    QCoreApplication::instance()->removeNativeEventFilter(this);
    for (const QPointer<PanelWindow> &window : m_retired) {
        delete window;
    }
}

void PanelStage::enter(X11Panel &panel)
{
    m_panels.push_back(&panel);
}

void PanelStage::leave(X11Panel &panel, std::unique_ptr<PanelWindow> window)
{
    std::erase(m_panels, &panel);
    std::erase_if(m_panelOfWindow, [&](const auto &entry) { return entry.second == &panel; });
    // The panel may be let go from inside one of its view's event handlers.
    std::erase(m_retired, nullptr);
    m_retired.emplace_back(window.get());
    window.release()->deleteLater();
}

void PanelStage::changed(X11Panel &panel)
{
    panel.markChanged();
    if (!m_commitPosted) {
        m_commitPosted = true;
        QMetaObject::invokeMethod(this, &PanelStage::commit, Qt::QueuedConnection);
    }
}

void PanelStage::startClock()
{
    if (!m_clock.isActive()) {
        m_clock.start();
    }
}

void PanelStage::windowAppeared(X11Panel &panel, std::uint32_t window)
{
    m_panelOfWindow[window] = &panel;
}

void PanelStage::windowVanished(std::uint32_t window)
{
    m_panelOfWindow.erase(window);
    orderOut(window);
}

void PanelStage::orderFront(std::uint32_t window, PanelLevel level)
{
    m_order.orderFront(window, level);
    m_frontAsked = true;
    if (std::ranges::find(m_orderOnServer, window) == m_orderOnServer.end()) {
        // A hidden window may stand anywhere; when it is shown, it comes in front of all other programs' windows.
        m_server.restack({.window = window});
        m_orderOnServer.push_back(window);
        restack();
    }
}

void PanelStage::orderOut(std::uint32_t window)
{
    m_order.remove(window);
    if (std::erase(m_orderOnServer, window) > 0) {
        m_keeper.setPanels(m_order.bottomToTop());
    }
}

Translucency PanelStage::translucency() const
{
    return m_compositor.isCompositorRunning() ? Translucency::available : Translucency::unavailable;
}

void PanelStage::commit()
{
    m_commitPosted = false;
    for (X11Panel *panel : m_panels) {
        panel->commit();
    }
    restack();
    if (std::exchange(m_frontAsked, false)) {
        m_keeper.setPanels(m_orderOnServer);
    }
    m_server.flush();
}

void PanelStage::restack()
{
    if (m_orderOnServer == m_order.bottomToTop()) {
        return;
    }
    for (const RestackStep &step : restackSteps(m_orderOnServer, m_order.bottomToTop())) {
        m_server.restack(step);
    }
    m_orderOnServer = m_order.bottomToTop();
}

void PanelStage::tick()
{
    const auto now = PanelMotion::TimePoint::clock::now();
    struct Arrival {
        std::weak_ptr<const void> panelAlive;
        std::function<void()> onCompleted;
    };
    std::vector<Arrival> arrivals;
    bool moving = false;
    for (X11Panel *panel : m_panels) {
        PanelMotion::Completions completed;
        moving = panel->advance(now, completed) || moving;
        for (auto &onCompleted : completed) {
            arrivals.push_back({panel->lifeToken(), std::move(onCompleted)});
        }
    }
    if (!moving) {
        m_clock.stop();
    }
    commit();
    const QPointer<PanelStage> self(this);
    for (const Arrival &arrival : arrivals) {
        if (!arrival.panelAlive.expired()) {
            arrival.onCompleted();
        }
        if (!self) {
            return;
        }
    }
}

void PanelStage::translucencyChanged()
{
    for (X11Panel *panel : m_panels) {
        panel->translucencyChanged();
    }
    m_server.flush();
}

void PanelStage::everythingMoved()
{
    for (X11Panel *panel : m_panels) {
        changed(*panel);
    }
}

void PanelStage::raiseAbove(std::span<const std::uint32_t> windows, std::uint32_t above)
{
    std::uint32_t sibling = above;
    for (const std::uint32_t window : windows) {
        m_server.restack({.window = window, .sibling = sibling});
        sibling = window;
    }
    m_server.flush();
}

bool PanelStage::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    auto *event = static_cast<xcb_generic_event_t *>(message);
    switch (event->response_type & ~sentEvent) {
    case 0: {
        const auto *error = reinterpret_cast<const xcb_generic_error_t *>(event);
        return m_lostWindows.contains(error->resource_id);
    }
    case XCB_DESTROY_NOTIFY: {
        const auto window = reinterpret_cast<const xcb_destroy_notify_event_t *>(event)->window;
        const auto entry = m_panelOfWindow.find(window);
        if (entry != m_panelOfWindow.end()) {
            m_lostWindows.insert(window);
            entry->second->nativeWindowLost();
        }
        return false;
    }
    case XCB_CONFIGURE_NOTIFY:
        // The toolkit asks the server, and waits for it, where a window is that says it has moved, because the place in
        // the event is wrong for windows inside a window manager's frame. It believes sent events.
        if (m_panelOfWindow.contains(reinterpret_cast<const xcb_configure_notify_event_t *>(event)->window)) {
            event->response_type |= sentEvent;
        }
        return false;
    case XCB_PROPERTY_NOTIFY: {
        // The toolkit would ask the server, and wait for it, what has become of the state. Nobody but us sets it: no
        // window manager looks after a panel.
        const auto *change = reinterpret_cast<const xcb_property_notify_event_t *>(event);
        return m_panelOfWindow.contains(change->window) && m_server.isState(change->atom);
    }
    default:
        return false;
    }
}

} // namespace lumenfold
