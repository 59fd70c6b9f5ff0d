#include "tests/support/desktop/Windows.h"

#include <xcb/res.h>

#include <optional>

namespace lumenfold::test {
namespace {

/// The window of a program inside a window manager's frame: the one that has WM_STATE.
std::optional<xcb_window_t> managedWindowIn(const XConnection &connection, xcb_window_t window)
{
    if (!connection.property(window, "WM_STATE").isEmpty()) {
        return window;
    }
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection.get(), xcb_query_tree(connection.get(), window), nullptr));
    if (tree) {
        for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
            if (const auto found = managedWindowIn(connection, xcb_query_tree_children(tree.get())[i])) {
                return found;
            }
        }
    }
    return std::nullopt;
}

QString titleOf(const XConnection &connection, xcb_window_t window)
{
    const QByteArray modern = connection.property(window, "_NET_WM_NAME");
    return modern.isEmpty() ? QString::fromLatin1(connection.property(window, "WM_NAME")) : QString::fromUtf8(modern);
}

} // namespace

QList<WindowInfo> windowsOnScreen(const XConnection &connection)
{
    QList<WindowInfo> windows;
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection.get(), xcb_query_tree(connection.get(), connection.root()), nullptr));
    for (int i = 0; tree && i < xcb_query_tree_children_length(tree.get()); ++i) {
        const xcb_window_t topLevel = xcb_query_tree_children(tree.get())[i];
        const Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
            connection.get(), xcb_get_window_attributes(connection.get(), topLevel), nullptr));
        if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
            attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY) {
            continue;
        }
        // Frames of window managers are override-redirect as well; what has no managed window inside is on its own.
        const xcb_window_t window = managedWindowIn(connection, topLevel).value_or(topLevel);
        const Reply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(connection.get(), xcb_get_geometry(connection.get(), window), nullptr));
        windows.append({
            .id = window,
            .topLevel = topLevel,
            .frame = connection.frameOf(window),
            .overrideRedirect = window == topLevel && attributes->override_redirect != 0,
            .pid = processOf(connection, window),
            .title = titleOf(connection, window),
            .depth = geometry ? geometry->depth : 0,
        });
    }
    return windows;
}

QList<WindowInfo> windowsOf(const XConnection &connection, pid_t pid)
{
    QList<WindowInfo> windows = windowsOnScreen(connection);
    windows.removeIf([pid](const WindowInfo &window) { return window.pid != pid; });
    return windows;
}

pid_t processOf(const XConnection &connection, xcb_window_t window)
{
    const xcb_res_client_id_spec_t wanted{.client = window, .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const Reply<xcb_res_query_client_ids_reply_t> reply(xcb_res_query_client_ids_reply(
        connection.get(), xcb_res_query_client_ids(connection.get(), 1, &wanted), nullptr));
    if (!reply) {
        return 0;
    }
    for (auto ids = xcb_res_query_client_ids_ids_iterator(reply.get()); ids.rem > 0;
         xcb_res_client_id_value_next(&ids)) {
        const auto &[kind, length] = *ids.data;
        if ((kind.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) && length >= 4) {
            return static_cast<pid_t>(*xcb_res_client_id_value_value(ids.data));
        }
    }
    return 0;
}

} // namespace lumenfold::test
