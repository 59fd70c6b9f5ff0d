#pragma once

#include "platform/x11/X11Connection.h"

#include <QColor>

#include <functional>
#include <optional>
#include <vector>

namespace lumenfold {

/// Who holds the system tray of the X server (the selection _NET_SYSTEM_TRAY_S0), told by events.
class TraySelection {
public:
    /// `connection` must outlive this.
    explicit TraySelection(x11::X11Connection &connection);

    /// The tray's window; XCB_NONE while there is no tray.
    [[nodiscard]] xcb_window_t owner() const { return m_owner; }
    /// What icons are to be painted with; nothing while the tray does not say.
    [[nodiscard]] std::optional<xcb_visualid_t> visual() const;
    [[nodiscard]] std::optional<QColor> foreground() const;

    std::function<void()> onOwnerChanged;
    std::function<void()> onForegroundChanged;

private:
    void find();

    x11::X11Connection &m_connection;
    const xcb_atom_t m_selection;
    const xcb_atom_t m_manager;
    const xcb_atom_t m_colors;
    xcb_window_t m_owner = XCB_NONE;
    std::vector<x11::EventSubscription> m_subscriptions;
};

/// The first color of _NET_SYSTEM_TRAY_COLORS: three numbers of 16 bits each.
[[nodiscard]] std::optional<QColor> trayForeground(const std::vector<std::uint32_t> &colors);

} // namespace lumenfold
