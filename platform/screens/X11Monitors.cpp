#include "platform/screens/X11Monitors.h"

#include <algorithm>
#include <functional>
#include <utility>

#include <xcb/randr.h>

namespace lumenfold {

using namespace x11;

X11Monitors::X11Monitors(X11Connection &connection) : m_connection(connection)
{
    const xcb_query_extension_reply_t *randr = connection.extension(&xcb_randr_id);
    if (randr == nullptr) {
        return;
    }
    constexpr std::uint32_t major = 1;
    constexpr std::uint32_t minor = 5;
    const auto version =
        connection.reply(xcb_randr_query_version_reply, xcb_randr_query_version(connection.xcb(), major, minor));
    m_isAvailable = version && ((*version)->major_version > major || (*version)->minor_version >= minor);
    xcb_randr_select_input(connection.xcb(), connection.root(),
                           XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                               XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE | XCB_RANDR_NOTIFY_MASK_RESOURCE_CHANGE);
    for (const int number : {XCB_RANDR_SCREEN_CHANGE_NOTIFY, XCB_RANDR_NOTIFY}) {
        const auto type = static_cast<std::uint8_t>(randr->first_event + number);
        m_subscriptions.push_back(
            connection.subscribe(type, [this](const xcb_generic_event_t &) { Q_EMIT changed(); }));
    }
    // Monitors that somebody defines by hand (parts of a large display) are told as a new configuration of the root.
    connection.addRootEventMask(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    m_subscriptions.push_back(connection.subscribe(XCB_CONFIGURE_NOTIFY, [this](const xcb_generic_event_t &event) {
        if (reinterpret_cast<const xcb_configure_notify_event_t &>(event).window == m_connection.root()) {
            Q_EMIT changed();
        }
    }));
}

std::vector<X11Monitor> X11Monitors::read() const
{
    if (!m_isAvailable) {
        return {};
    }
    constexpr std::uint8_t activeOnly = 1;
    const auto answer = m_connection.reply(xcb_randr_get_monitors_reply,
                                           xcb_randr_get_monitors(m_connection.xcb(), m_connection.root(), activeOnly));
    if (!answer) {
        return {};
    }
    struct Named {
        X11Monitor monitor;
        xcb_get_atom_name_cookie_t name{};
    };
    std::vector<Named> found;
    for (auto info = xcb_randr_get_monitors_monitors_iterator(answer->get()); info.rem > 0;
         xcb_randr_monitor_info_next(&info)) {
        found.push_back({.monitor = {.name = {},
                                     .frame = QRect(info.data->x, info.data->y, info.data->width, info.data->height),
                                     .isPrimary = info.data->primary != 0},
                         .name = xcb_get_atom_name(m_connection.xcb(), info.data->name)});
    }
    std::vector<X11Monitor> monitors;
    for (Named &named : found) {
        const auto name = m_connection.reply(xcb_get_atom_name_reply, named.name);
        if (name) {
            named.monitor.name =
                QString::fromUtf8(xcb_get_atom_name_name(name->get()), xcb_get_atom_name_name_length(name->get()));
        }
        monitors.push_back(std::move(named.monitor));
    }
    std::stable_partition(monitors.begin(), monitors.end(), std::mem_fn(&X11Monitor::isPrimary));
    return monitors;
}

} // namespace lumenfold
