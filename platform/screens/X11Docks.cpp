#include "platform/screens/X11Docks.h"

#include "platform/x11/X11Properties.h"

#include <algorithm>
#include <utility>

namespace lumenfold {
namespace {

constexpr std::uint32_t maxWorkspaces = 256;
constexpr std::uint32_t maxWindowTypes = 16;
constexpr std::uint32_t strutItems = 12;

using namespace x11;

/// The two ways to say a strut, both asked for.
struct StrutCookies {
    xcb_get_property_cookie_t partial;
    xcb_get_property_cookie_t simple;
};

StrutCookies requestStrut(X11Connection &connection, xcb_window_t window)
{
    return {
        requestProperty(connection, window, connection.atom("_NET_WM_STRUT_PARTIAL"), XCB_ATOM_CARDINAL, strutItems),
        requestProperty(connection, window, connection.atom("_NET_WM_STRUT"), XCB_ATOM_CARDINAL, strutItems)};
}

std::optional<Strut> readStrut(X11Connection &connection, const StrutCookies &cookies)
{
    const auto partial = readItems(connection, cookies.partial, XCB_ATOM_CARDINAL);
    const auto simple = readItems(connection, cookies.simple, XCB_ATOM_CARDINAL);
    return strutFromItems(partial.empty() ? simple : partial);
}

} // namespace

X11Docks::X11Docks(X11Connection &connection) : m_connection(connection)
{
    connection.atoms().prefetch({"_NET_CLIENT_LIST", "_NET_WM_STRUT_PARTIAL", "_NET_WM_STRUT", "_NET_WM_WINDOW_TYPE",
                                 "_NET_WM_WINDOW_TYPE_DOCK", "_NET_WORKAREA", "_NET_CURRENT_DESKTOP"});
    connection.addRootEventMask(XCB_EVENT_MASK_PROPERTY_CHANGE);
    m_subscriptions.push_back(connection.subscribe(XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t &event) {
        handleProperty(reinterpret_cast<const xcb_property_notify_event_t &>(event));
    }));
    m_subscriptions.push_back(connection.subscribe(XCB_CONFIGURE_NOTIFY, [this](const xcb_generic_event_t &event) {
        handleConfigure(reinterpret_cast<const xcb_configure_notify_event_t &>(event));
    }));
    readClients();
    readWorkArea();
}

std::vector<Dock> X11Docks::docks() const
{
    std::vector<Dock> docks;
    for (const auto &[window, dock] : m_clients) {
        if (dock) {
            docks.push_back(*dock);
        }
    }
    return docks;
}

void X11Docks::handleProperty(const xcb_property_notify_event_t &event)
{
    if (event.window == m_connection.root()) {
        if (event.atom == m_connection.atom("_NET_CLIENT_LIST")) {
            readClients();
        } else if (event.atom == m_connection.atom("_NET_WORKAREA") ||
                   event.atom == m_connection.atom("_NET_CURRENT_DESKTOP")) {
            readWorkArea();
        }
        return;
    }
    const bool isStrut =
        event.atom == m_connection.atom("_NET_WM_STRUT_PARTIAL") || event.atom == m_connection.atom("_NET_WM_STRUT");
    const auto client = m_clients.find(event.window);
    if (isStrut && client != m_clients.end() && client->second) {
        readDocks({event.window});
        Q_EMIT changed();
    }
}

void X11Docks::handleConfigure(const xcb_configure_notify_event_t &event)
{
    const auto client = m_clients.find(event.window);
    if (event.event == event.window && client != m_clients.end() && client->second) {
        readDocks({event.window});
        Q_EMIT changed();
    }
}

void X11Docks::readClients()
{
    const auto windows = itemsOfProperty(m_connection, m_connection.root(), m_connection.atom("_NET_CLIENT_LIST"),
                                         XCB_ATOM_WINDOW, maxClients);
    const std::vector<Dock> before = docks();
    std::erase_if(m_clients,
                  [&](const auto &client) { return std::ranges::find(windows, client.first) == windows.end(); });

    struct Question {
        xcb_window_t window = XCB_NONE;
        StrutCookies strut{};
        xcb_get_property_cookie_t type{};
    };
    std::vector<Question> questions;
    for (const xcb_window_t window : windows) {
        if (!m_clients.contains(window)) {
            questions.push_back({window, requestStrut(m_connection, window),
                                 requestProperty(m_connection, window, m_connection.atom("_NET_WM_WINDOW_TYPE"),
                                                 XCB_ATOM_ATOM, maxWindowTypes)});
        }
    }
    std::vector<xcb_window_t> newDocks;
    for (const Question &question : questions) {
        const auto strut = readStrut(m_connection, question.strut);
        const auto types = readItems(m_connection, question.type, XCB_ATOM_ATOM);
        const bool isDock = std::ranges::find(types, m_connection.atom("_NET_WM_WINDOW_TYPE_DOCK")) != types.end();
        m_clients.emplace(question.window, std::nullopt);
        if (strut || isDock) {
            // Docks alone are watched: every terminal that changes its title would wake us otherwise.
            const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
            xcb_change_window_attributes(m_connection.xcb(), question.window, XCB_CW_EVENT_MASK, &events);
            newDocks.push_back(question.window);
        }
    }
    // Read again now that changes are told, or one in between would be missed.
    readDocks(newDocks);
    if (docks() != before) {
        Q_EMIT changed();
    }
}

void X11Docks::readDocks(const std::vector<xcb_window_t> &windows)
{
    struct Question {
        xcb_window_t window = XCB_NONE;
        StrutCookies strut{};
        xcb_get_geometry_cookie_t size{};
        xcb_translate_coordinates_cookie_t place{};
    };
    std::vector<Question> questions;
    for (const xcb_window_t window : windows) {
        questions.push_back({window, requestStrut(m_connection, window), xcb_get_geometry(m_connection.xcb(), window),
                             xcb_translate_coordinates(m_connection.xcb(), window, m_connection.root(), 0, 0)});
    }
    for (const Question &question : questions) {
        Dock dock{.window = {}, .strut = readStrut(m_connection, question.strut).value_or(Strut())};
        const auto size = m_connection.reply(xcb_get_geometry_reply, question.size);
        const auto place = m_connection.reply(xcb_translate_coordinates_reply, question.place);
        if (size && place) {
            dock.window = QRect((*place)->dst_x, (*place)->dst_y, (*size)->width, (*size)->height);
        }
        m_clients[question.window] = dock;
    }
}

void X11Docks::readWorkArea()
{
    constexpr std::size_t itemsPerWorkspace = 4;
    const xcb_window_t root = m_connection.root();
    const auto areasAsked = requestProperty(m_connection, root, m_connection.atom("_NET_WORKAREA"), XCB_ATOM_CARDINAL,
                                            maxWorkspaces * itemsPerWorkspace);
    const std::size_t workspace =
        itemOfProperty(m_connection, root, m_connection.atom("_NET_CURRENT_DESKTOP"), XCB_ATOM_CARDINAL).value_or(0);
    const auto areas = readItems(m_connection, areasAsked, XCB_ATOM_CARDINAL);

    std::optional<QRect> workArea;
    if (const std::size_t first = workspace * itemsPerWorkspace; first + itemsPerWorkspace <= areas.size()) {
        const auto item = [&](std::size_t index) { return static_cast<int>(areas[first + index]); };
        workArea = QRect(item(0), item(1), item(2), item(3));
    }
    if (std::exchange(m_workArea, workArea) != workArea) {
        Q_EMIT changed();
    }
}

} // namespace lumenfold
