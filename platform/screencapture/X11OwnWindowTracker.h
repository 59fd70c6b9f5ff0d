#pragma once

#include "platform/screencapture/OwnWindowTraces.h"
#include "platform/x11/QtWindows.h"
#include "platform/x11/X11Connection.h"

#include <QRect>

#include <map>
#include <optional>
#include <vector>

namespace lumenfold {

/// Tells `OwnWindowTraces` where the toolkit's windows are, from the server's events. A window that a window manager
/// framed is its frame. A window inside another program's (an icon in the tray) is part of that one and does not count.
class X11OwnWindowTracker {
public:
    /// Both must outlive this.
    X11OwnWindowTracker(x11::X11Connection &connection, OwnWindowTraces &traces);
    X11OwnWindowTracker(const X11OwnWindowTracker &) = delete;
    X11OwnWindowTracker &operator=(const X11OwnWindowTracker &) = delete;

    /// True for a child of the root window that is or holds a window of this process.
    [[nodiscard]] bool isOwn(xcb_window_t topLevel) const { return m_topLevels.contains(topLevel); }

private:
    struct TopLevel {
        /// The toolkit's window; another one than the top-level window when there is a frame.
        xcb_window_t own = XCB_NONE;
        /// With its border.
        QRect frame;
        bool isMapped = false;
    };

    void handle(const xcb_generic_event_t &event);
    void handleReparent(const xcb_reparent_notify_event_t &event);
    void setMapped(xcb_window_t window, bool isMapped);
    void forget(xcb_window_t window);
    void forgetFrameOf(xcb_window_t own);
    void adoptExisting();
    /// `own` is inside `parent`, which is the root or a window of somebody else.
    void adopt(xcb_window_t own, xcb_window_t parent);
    /// The frame, that is, the child of the root that holds `window`; nothing when it is another program's window.
    [[nodiscard]] std::optional<xcb_window_t> frameAbove(xcb_window_t window) const;
    [[nodiscard]] bool belongsToAnotherProgram(xcb_window_t window) const;

    x11::X11Connection &m_connection;
    OwnWindowTraces &m_traces;
    std::optional<x11::ResourceRange> m_ownResources;
    std::map<xcb_window_t, TopLevel> m_topLevels;
    std::vector<x11::EventSubscription> m_subscriptions;
};

} // namespace lumenfold
