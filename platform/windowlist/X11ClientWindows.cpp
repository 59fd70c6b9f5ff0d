#include "platform/windowlist/X11ClientWindows.h"

#include "platform/x11/X11Properties.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include <xcb/res.h>
#include <xcb/shape.h>

namespace lumenfold::x11 {
namespace {

/// Bounds for lists that other programs write.
constexpr std::uint32_t maxStates = 64;
constexpr std::uint32_t maxTypes = 16;

struct PropertyQuestions {
    xcb_get_property_cookie_t types{};
    xcb_get_property_cookie_t states{};
    xcb_get_property_cookie_t workspace{};
    xcb_get_property_cookie_t pid{};
    xcb_get_property_cookie_t border{};
};

PropertyQuestions askProperties(X11Connection &connection, xcb_window_t window)
{
    return {
        requestProperty(connection, window, connection.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, maxTypes),
        requestProperty(connection, window, connection.atom("_NET_WM_STATE"), XCB_ATOM_ATOM, maxStates),
        requestProperty(connection, window, connection.atom("_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, 1),
        requestProperty(connection, window, connection.atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 1),
        requestProperty(connection, window, connection.atom("_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 4),
    };
}

/// Programs list the types they could be, the best one first; the first that anybody knows counts.
WindowRole roleFrom(X11Connection &connection, const std::vector<std::uint32_t> &types)
{
    struct Known {
        const char *type;
        WindowRole role;
    };
    static constexpr std::array known{
        Known{"_NET_WM_WINDOW_TYPE_NORMAL", WindowRole::normal},
        Known{"_NET_WM_WINDOW_TYPE_DIALOG", WindowRole::normal},
        Known{"_NET_WM_WINDOW_TYPE_UTILITY", WindowRole::normal},
        Known{"_NET_WM_WINDOW_TYPE_TOOLBAR", WindowRole::normal},
        Known{"_NET_WM_WINDOW_TYPE_SPLASH", WindowRole::normal},
        Known{"_NET_WM_WINDOW_TYPE_DESKTOP", WindowRole::desktop},
        Known{"_NET_WM_WINDOW_TYPE_DOCK", WindowRole::dock},
        Known{"_NET_WM_WINDOW_TYPE_NOTIFICATION", WindowRole::notification},
        Known{"_NET_WM_WINDOW_TYPE_MENU", WindowRole::menu},
        Known{"_NET_WM_WINDOW_TYPE_DROPDOWN_MENU", WindowRole::menu},
        Known{"_NET_WM_WINDOW_TYPE_POPUP_MENU", WindowRole::menu},
        Known{"_NET_WM_WINDOW_TYPE_TOOLTIP", WindowRole::menu},
        Known{"_NET_WM_WINDOW_TYPE_COMBO", WindowRole::menu},
        Known{"_NET_WM_WINDOW_TYPE_DND", WindowRole::menu},
    };
    for (const std::uint32_t type : types) {
        for (const Known &candidate : known) {
            if (connection.atom(candidate.type) == type) {
                return candidate.role;
            }
        }
    }
    return WindowRole::normal;
}

QMargins marginsFrom(const std::vector<std::uint32_t> &extents)
{
    constexpr std::size_t sides = 4;
    constexpr std::uint32_t widest = 1000;
    if (extents.size() != sides || std::ranges::any_of(extents, [](std::uint32_t side) { return side > widest; })) {
        return {};
    }
    const auto side = [&](std::size_t index) { return static_cast<int>(extents[index]); };
    // The property's order is left, right, top, bottom.
    return {side(0), side(2), side(1), side(3)};
}

ClientWindow readProperties(X11Connection &connection, xcb_window_t window, const PropertyQuestions &asked)
{
    constexpr std::uint32_t onAllWorkspaces = 0xffffffff;
    ClientWindow client{.id = window};
    client.role = roleFrom(connection, readItems(connection, asked.types, XCB_ATOM_ATOM));
    const auto states = readItems(connection, asked.states, XCB_ATOM_ATOM);
    client.isHidden = std::ranges::find(states, connection.atom("_NET_WM_STATE_HIDDEN")) != states.end();
    const auto workspace = readItems(connection, asked.workspace, XCB_ATOM_CARDINAL);
    if (!workspace.empty() && workspace.front() != onAllWorkspaces) {
        client.workspace = workspace.front();
    }
    const auto pid = readItems(connection, asked.pid, XCB_ATOM_CARDINAL);
    if (!pid.empty() && pid.front() != 0) {
        client.pid = pid.front();
    }
    client.invisibleBorder = marginsFrom(readItems(connection, asked.border, XCB_ATOM_CARDINAL));
    return client;
}

/// Finds the child of the root above each client, all clients one level at a time.
void findTopLevels(X11Connection &connection, std::vector<ClientWindow> &clients)
{
    // Window managers nest frames two or three deep.
    constexpr int deepest = 8;
    struct Climb {
        ClientWindow *client = nullptr;
        xcb_window_t reached = XCB_NONE;
        xcb_query_tree_cookie_t asked{};
    };
    std::vector<Climb> climbs;
    for (ClientWindow &client : clients) {
        climbs.push_back({&client, client.id});
    }
    for (int level = 0; level < deepest && !climbs.empty(); ++level) {
        for (Climb &climb : climbs) {
            climb.asked = xcb_query_tree(connection.xcb(), climb.reached);
        }
        std::vector<Climb> higher;
        for (Climb &climb : climbs) {
            const auto tree = connection.reply(xcb_query_tree_reply, climb.asked);
            if (!tree || (*tree)->parent == XCB_NONE) {
                continue;
            }
            if ((*tree)->parent == connection.root()) {
                climb.client->topLevel = climb.reached;
            } else {
                climb.reached = (*tree)->parent;
                higher.push_back(climb);
            }
        }
        climbs = std::move(higher);
    }
}

void findPlaces(X11Connection &connection, std::vector<ClientWindow> &clients)
{
    struct Question {
        xcb_get_geometry_cookie_t size{};
        xcb_translate_coordinates_cookie_t place{};
    };
    std::vector<Question> questions;
    for (const ClientWindow &client : clients) {
        questions.push_back({xcb_get_geometry(connection.xcb(), client.id),
                             xcb_translate_coordinates(connection.xcb(), client.id, connection.root(), 0, 0)});
    }
    for (std::size_t index = 0; index < clients.size(); ++index) {
        const auto size = connection.reply(xcb_get_geometry_reply, questions[index].size);
        const auto place = connection.reply(xcb_translate_coordinates_reply, questions[index].place);
        if (size && place) {
            clients[index].inside = QRect((*place)->dst_x, (*place)->dst_y, (*size)->width, (*size)->height);
        }
    }
}

/// The frame, less what the shape cuts off: some window managers grip windows by an invisible border.
QRect visibleFrame(const xcb_get_geometry_reply_t &geometry, const Answer<xcb_shape_query_extents_reply_t> &shape)
{
    const int border = geometry.border_width;
    const QRect frame(geometry.x, geometry.y, geometry.width + 2 * border, geometry.height + 2 * border);
    if (!shape || (*shape)->bounding_shaped == 0) {
        return frame;
    }
    const QRect shaped(geometry.x + border + (*shape)->bounding_shape_extents_x,
                       geometry.y + border + (*shape)->bounding_shape_extents_y, (*shape)->bounding_shape_extents_width,
                       (*shape)->bounding_shape_extents_height);
    return shaped.intersected(frame);
}

} // namespace

std::optional<std::vector<ClientWindow>> clientWindows(X11Connection &connection)
{
    const xcb_window_t root = connection.root();
    const auto stackingAsked =
        requestProperty(connection, root, connection.atom("_NET_CLIENT_LIST_STACKING"), XCB_ATOM_WINDOW, maxClients);
    const auto plainAsked =
        requestProperty(connection, root, connection.atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW, maxClients);
    const auto managerAsked =
        requestProperty(connection, root, connection.atom("_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW, 1);
    auto listed = readItems(connection, stackingAsked, XCB_ATOM_WINDOW);
    const auto plain = readItems(connection, plainAsked, XCB_ATOM_WINDOW);
    const auto manager = readItems(connection, managerAsked, XCB_ATOM_WINDOW);
    if (listed.empty()) {
        listed = plain;
    }
    // The lists of a window manager that ended stay on the root window; its own window does not.
    const bool isManaged =
        !manager.empty() &&
        connection.reply(xcb_get_window_attributes_reply, xcb_get_window_attributes(connection.xcb(), manager.front()))
            .has_value();
    if (!isManaged) {
        return std::nullopt;
    }
    std::vector<ClientWindow> clients = describedWindows(connection, listed);
    findTopLevels(connection, clients);
    findPlaces(connection, clients);
    return clients;
}

std::vector<TopLevelWindow> topLevelWindows(X11Connection &connection)
{
    xcb_connection_t *xcb = connection.xcb();
    const bool hasShapes = connection.extension(&xcb_shape_id) != nullptr;
    const auto tree = connection.reply(xcb_query_tree_reply, xcb_query_tree(xcb, connection.root()));
    if (!tree) {
        return {};
    }
    struct Question {
        xcb_window_t window = XCB_NONE;
        xcb_get_window_attributes_cookie_t attributes{};
        xcb_get_geometry_cookie_t geometry{};
        xcb_shape_query_extents_cookie_t shape{};
    };
    std::vector<Question> questions;
    const xcb_window_t *children = xcb_query_tree_children(tree->get());
    for (int index = 0; index < xcb_query_tree_children_length(tree->get()); ++index) {
        const xcb_window_t child = children[index];
        questions.push_back({child, xcb_get_window_attributes(xcb, child), xcb_get_geometry(xcb, child),
                             hasShapes ? xcb_shape_query_extents(xcb, child) : xcb_shape_query_extents_cookie_t{}});
    }
    std::vector<TopLevelWindow> windows;
    for (const Question &question : questions) {
        const auto attributes = connection.reply(xcb_get_window_attributes_reply, question.attributes);
        const auto geometry = connection.reply(xcb_get_geometry_reply, question.geometry);
        const Answer<xcb_shape_query_extents_reply_t> shape =
            hasShapes ? connection.reply(xcb_shape_query_extents_reply, question.shape)
                      : tl::unexpected(PlatformError());
        if (attributes && geometry && (*attributes)->map_state == XCB_MAP_STATE_VIEWABLE &&
            (*attributes)->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT) {
            windows.push_back({.id = question.window,
                               .frame = visibleFrame(**geometry, shape),
                               .isOverrideRedirect = (*attributes)->override_redirect != 0});
        }
    }
    return windows;
}

std::vector<ClientWindow> describedWindows(X11Connection &connection, const std::vector<xcb_window_t> &windows)
{
    std::vector<PropertyQuestions> questions;
    for (const xcb_window_t window : windows) {
        questions.push_back(askProperties(connection, window));
    }
    std::vector<ClientWindow> described;
    for (std::size_t index = 0; index < windows.size(); ++index) {
        described.push_back(readProperties(connection, windows[index], questions[index]));
    }
    return described;
}

std::map<xcb_window_t, qint64> localProcesses(X11Connection &connection, const std::vector<xcb_window_t> &windows)
{
    if (connection.extension(&xcb_res_id) == nullptr) {
        return {};
    }
    // The server answers by client; a client's windows have its number in the high bits of theirs.
    const std::uint32_t clientBits = ~xcb_get_setup(connection.xcb())->resource_id_mask;
    std::set<std::uint32_t> clients;
    for (const xcb_window_t window : windows) {
        clients.insert(window & clientBits);
    }
    std::vector<xcb_res_client_id_spec_t> questions;
    for (const std::uint32_t client : clients) {
        questions.push_back({.client = client, .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID});
    }
    const auto answer = connection.reply(
        xcb_res_query_client_ids_reply,
        xcb_res_query_client_ids(connection.xcb(), static_cast<std::uint32_t>(questions.size()), questions.data()));
    if (!answer) {
        return {};
    }
    std::map<std::uint32_t, qint64> pidOfClient;
    for (auto id = xcb_res_query_client_ids_ids_iterator(answer->get()); id.rem > 0;
         xcb_res_client_id_value_next(&id)) {
        if (xcb_res_client_id_value_value_length(id.data) > 0) {
            const auto &[owner, length] = *id.data;
            pidOfClient[owner.client & clientBits] = *xcb_res_client_id_value_value(id.data);
        }
    }
    std::map<xcb_window_t, qint64> pids;
    for (const xcb_window_t window : windows) {
        if (const auto found = pidOfClient.find(window & clientBits); found != pidOfClient.end()) {
            pids[window] = found->second;
        }
    }
    return pids;
}

} // namespace lumenfold::x11
