#pragma once

#include "platform/events/EventMonitors.h"
#include "platform/events/ServerClock.h"
#include "platform/events/X11ScrollAxes.h"
#include "platform/screens/X11Screens.h"
#include "platform/x11/X11Connection.h"

#include <QObject>

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace lumenfold {

/// Pointer events of the whole session by way of the X input extension's raw events: they are copies, so nobody is
/// deprived of anything, and they come whoever has the pointer or holds it. They are asked for only while there is a
/// monitor that wants them.
///
/// Raw events do not say over which window the pointer is; the server is asked that, once for all events of one turn of
/// the event loop, of which only the last movement is delivered. As on a Mac, moving with a button held is not moving.
///
/// No event has a gesture phase: the server tells nothing of two fingers that scroll but how far they went.
class X11EventMonitors : public QObject, public EventMonitors {
    Q_OBJECT

public:
    /// Both outlive this. Nobody else selects events of the input extension for the root window on the connection.
    X11EventMonitors(x11::X11Connection &connection, const X11Screens &screens);
    ~X11EventMonitors() override;

    [[nodiscard]] std::unique_ptr<EventMonitor> addGlobalMonitor(std::uint32_t mask, Handler handler) override;
    [[nodiscard]] std::unique_ptr<EventMonitor> addLocalMonitor(std::uint32_t mask, Handler handler) override;

private:
    enum class Reach { global, local };
    struct Watcher {
        Reach reach = Reach::global;
        std::uint32_t mask = 0;
        Handler handler;
    };
    class Installed;

    [[nodiscard]] std::unique_ptr<EventMonitor> add(Reach reach, std::uint32_t mask, Handler handler);
    void remove(const Watcher *watcher);
    void select();
    void noticed(const xcb_generic_event_t &event);
    void moved(std::uint32_t serverTime);
    void scrolled(const ScrollDelta &delta, std::uint32_t serverTime);
    void deliverSoon();
    void deliver();
    [[nodiscard]] std::span<const AxisMovement> movementsIn(const xcb_generic_event_t &event);
    [[nodiscard]] Reach reachOf(xcb_window_t topLevel, Point place) const;

    x11::X11Connection &m_connection;
    const X11Screens &m_screens;
    std::uint8_t m_extension = 0;
    std::uint32_t m_selected = 0;
    std::vector<std::shared_ptr<const Watcher>> m_watchers;
    X11ScrollAxes m_axes;
    ServerClock m_clock;
    /// Of this turn of the event loop, oldest first; without a place yet.
    std::vector<PointerEvent> m_pending;
    /// Kept to be used again: there are many events.
    std::vector<AxisMovement> m_movements;
    x11::EventSubscription m_subscription;
};

} // namespace lumenfold
