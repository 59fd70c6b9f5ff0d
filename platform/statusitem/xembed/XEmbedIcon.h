#pragma once

#include "platform/statusitem/StatusIconPainter.h"
#include "platform/statusitem/xembed/TraySelection.h"
#include "platform/x11/X11Connection.h"

#include <QColor>
#include <QRect>
#include <QSize>

#include <functional>
#include <vector>

namespace lumenfold {

/// The status item as a window of its own inside the X server's system tray, for desktops that have no other. It docks
/// whenever there is a tray while it is wanted.
class XEmbedIcon {
public:
    /// `connection` must outlive this.
    explicit XEmbedIcon(x11::X11Connection &connection);
    XEmbedIcon(const XEmbedIcon &) = delete;
    XEmbedIcon &operator=(const XEmbedIcon &) = delete;
    ~XEmbedIcon();

    void setWanted(bool wanted);
    void setIcon(const StatusIcon &icon);
    /// For a template in a tray whose ground cannot be told.
    void setFallbackColor(const QColor &color);

    /// A click with the left or the right button; where the icon is, in root pixels.
    std::function<void(const QRect &place)> onClicked;
    /// The pointer came upon the icon, or left it.
    std::function<void(bool isInside, const QRect &place)> onHovered;

private:
    void dock();
    void undock();
    void subscribe();
    void pressed(const xcb_button_press_event_t &event);
    void paint();
    /// What lies beneath the icon; null when that cannot be seen.
    [[nodiscard]] QImage ground() const;
    [[nodiscard]] QColor templateColor(const QImage &ground) const;

    x11::X11Connection &m_connection;
    TraySelection m_tray;
    StatusIcon m_icon;
    QColor m_fallbackColor = Qt::white;
    bool m_isWanted = false;
    xcb_window_t m_window = XCB_NONE;
    xcb_gcontext_t m_context = XCB_NONE;
    std::uint8_t m_depth = 0;
    /// Pixels.
    QSize m_size;
    std::vector<x11::EventSubscription> m_subscriptions;
};

/// Black writing on a light ground, white writing on a dark one.
[[nodiscard]] QColor writingOn(const QImage &ground);

} // namespace lumenfold
