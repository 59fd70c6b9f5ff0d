#pragma once

#include "platform/screens/Struts.h"
#include "platform/x11/X11Connection.h"

#include <QObject>
#include <QRect>

#include <map>
#include <optional>
#include <vector>

namespace lumenfold {

/// Which docks and bars of other programs reserve room on the screens, as the window manager lists them. Kept up to
/// date by events; asking costs nothing.
class X11Docks : public QObject {
    Q_OBJECT

public:
    /// `connection` must outlive this.
    explicit X11Docks(x11::X11Connection &connection);

    [[nodiscard]] std::vector<Dock> docks() const;
    /// _NET_WORKAREA of the current workspace; root pixels. Nothing when the window manager does not tell.
    [[nodiscard]] std::optional<QRect> workArea() const { return m_workArea; }

Q_SIGNALS:
    void changed();

private:
    void handleProperty(const xcb_property_notify_event_t &event);
    void handleConfigure(const xcb_configure_notify_event_t &event);
    void readClients();
    void readDocks(const std::vector<xcb_window_t> &windows);
    void readWorkArea();

    x11::X11Connection &m_connection;
    /// All windows that the window manager lists; those with nothing to watch are null.
    std::map<xcb_window_t, std::optional<Dock>> m_clients;
    std::optional<QRect> m_workArea;
    std::vector<x11::EventSubscription> m_subscriptions;
};

} // namespace lumenfold
