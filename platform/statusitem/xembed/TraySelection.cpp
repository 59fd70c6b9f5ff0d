#include "platform/statusitem/xembed/TraySelection.h"

#include "platform/x11/X11Properties.h"

#include <array>
#include <utility>

namespace lumenfold {
namespace {

using namespace x11;

/// Four colors of three numbers each.
constexpr std::uint32_t colorItems = 12;

QByteArray selectionName(int screen)
{
    return "_NET_SYSTEM_TRAY_S" + QByteArray::number(screen);
}

} // namespace

TraySelection::TraySelection(X11Connection &connection)
    : m_connection(connection)
    , m_selection(connection.atom(selectionName(connection.screenNumber()).constData()))
    , m_manager(connection.atom("MANAGER"))
    , m_colors(connection.atom("_NET_SYSTEM_TRAY_COLORS"))
{
    // A new tray says so to the root window.
    connection.addRootEventMask(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    m_subscriptions.push_back(connection.subscribe(XCB_CLIENT_MESSAGE, [this](const xcb_generic_event_t &event) {
        const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(event);
        if (message.type == m_manager && message.format == 32 && message.data.data32[1] == m_selection) {
            find();
        }
    }));
    m_subscriptions.push_back(connection.subscribe(XCB_DESTROY_NOTIFY, [this](const xcb_generic_event_t &event) {
        const auto &destroyed = reinterpret_cast<const xcb_destroy_notify_event_t &>(event);
        if (m_owner != XCB_NONE && destroyed.window == m_owner) {
            // First of all it is gone: the next one's window may have the same number.
            m_owner = XCB_NONE;
            if (onOwnerChanged) {
                onOwnerChanged();
            }
            find();
        }
    }));
    m_subscriptions.push_back(connection.subscribe(XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t &event) {
        const auto &changed = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        if (m_owner != XCB_NONE && changed.window == m_owner && changed.atom == m_colors && onForegroundChanged) {
            onForegroundChanged();
        }
    }));
    find();
}

std::optional<xcb_visualid_t> TraySelection::visual() const
{
    return itemOfProperty(m_connection, m_owner, m_connection.atom("_NET_SYSTEM_TRAY_VISUAL"), XCB_ATOM_VISUALID);
}

std::optional<QColor> TraySelection::foreground() const
{
    return trayForeground(itemsOfProperty(m_connection, m_owner, m_colors, XCB_ATOM_CARDINAL, colorItems));
}

void TraySelection::find()
{
    xcb_connection_t *xcb = m_connection.xcb();
    const auto ask = [&] {
        const auto answer =
            m_connection.reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(xcb, m_selection));
        return answer ? (*answer)->owner : static_cast<xcb_window_t>(XCB_NONE);
    };
    // Asked again once its end would be told: one that ended in between would never be missed.
    xcb_window_t owner = ask();
    for (int attempt = 0; owner != XCB_NONE && attempt < 3; ++attempt) {
        constexpr std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(xcb, owner, XCB_CW_EVENT_MASK, &events);
        if (std::exchange(owner, ask()) == owner) {
            break;
        }
    }
    if (std::exchange(m_owner, owner) != owner && onOwnerChanged) {
        onOwnerChanged();
    }
}

std::optional<QColor> trayForeground(const std::vector<std::uint32_t> &colors)
{
    if (colors.size() < 3) {
        return std::nullopt;
    }
    const auto channel = [&colors](std::size_t index) { return static_cast<quint16>(colors[index]); };
    return QColor::fromRgba64(channel(0), channel(1), channel(2));
}

} // namespace lumenfold
