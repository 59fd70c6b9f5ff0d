#pragma once

#include "platform/x11/X11Connection.h"

#include <QObject>

namespace lumenfold {

/// Whether a compositing manager runs, now and from now on: it owns the selection _NET_WM_CM_Sn of its screen.
class CompositorWatch : public QObject {
    Q_OBJECT

public:
    /// The connection outlives the watch.
    explicit CompositorWatch(x11::X11Connection &connection);

    [[nodiscard]] bool isCompositorRunning() const { return m_running; }

Q_SIGNALS:
    void changed(bool isCompositorRunning);

private:
    void selectionChanged(const xcb_generic_event_t &event);

    x11::X11Connection &m_connection;
    xcb_atom_t m_selection;
    bool m_running = false;
    x11::EventSubscription m_subscription;
};

} // namespace lumenfold
