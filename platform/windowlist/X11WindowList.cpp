#include "platform/windowlist/X11WindowList.h"

#include "platform/windowlist/X11ClientWindows.h"
#include "platform/x11/QtWindows.h"
#include "platform/x11/X11Properties.h"

#include <QCoreApplication>

#include <algorithm>
#include <optional>
#include <utility>

namespace lumenfold {
namespace {

using namespace x11;

/// The numbers of macOS, which order windows by them; here only 0 and not 0 matter.
constexpr int normalLayer = 0;
constexpr int dockLayer = 20;
constexpr int notificationLayer = 25;
constexpr int menuLayer = 101;

int layerOf(WindowRole role)
{
    switch (role) {
    case WindowRole::normal:
    case WindowRole::desktop:
        return normalLayer;
    case WindowRole::dock:
        return dockLayer;
    case WindowRole::notification:
        return notificationLayer;
    case WindowRole::menu:
        return menuLayer;
    }
    return normalLayer;
}

/// A window that can be seen, what is known of it, and where its edges are (root pixels).
struct SeenWindow {
    ClientWindow description;
    QRect frame;
    int layer = normalLayer;
};

/// Windows without a window manager's word: those that asked to be left alone are menus and the like, also when they
/// say nothing about themselves.
SeenWindow unmanaged(const TopLevelWindow &window, ClientWindow description, bool hasManager)
{
    int layer = layerOf(description.role);
    if (layer == normalLayer && (window.isOverrideRedirect || hasManager)) {
        layer = menuLayer;
    }
    return {std::move(description), window.frame, layer};
}

QRect edgesOf(const ClientWindow &client, const QRect &frame)
{
    return client.invisibleBorder.isNull() ? frame : client.inside.marginsRemoved(client.invisibleBorder);
}

/// Front to back.
std::vector<SeenWindow> seenWindows(X11Connection &connection)
{
    const auto clients = clientWindows(connection);
    const auto currentWorkspace =
        itemOfProperty(connection, connection.root(), connection.atom("_NET_CURRENT_DESKTOP"), XCB_ATOM_CARDINAL);
    auto topLevels = topLevelWindows(connection);
    std::ranges::reverse(topLevels);

    const auto clientIn = [&](xcb_window_t topLevel) -> const ClientWindow * {
        if (!clients) {
            return nullptr;
        }
        const auto found = std::ranges::find(*clients, topLevel, &ClientWindow::topLevel);
        return found == clients->end() ? nullptr : &*found;
    };
    std::vector<xcb_window_t> others;
    for (const TopLevelWindow &window : topLevels) {
        if (clientIn(window.id) == nullptr) {
            others.push_back(window.id);
        }
    }
    const std::vector<ClientWindow> otherDescriptions = describedWindows(connection, others);

    std::vector<SeenWindow> seen;
    auto nextOther = otherDescriptions.begin();
    for (const TopLevelWindow &window : topLevels) {
        const ClientWindow *client = clientIn(window.id);
        if (client == nullptr) {
            seen.push_back(unmanaged(window, *nextOther++, clients.has_value()));
            continue;
        }
        const bool isElsewhere = client->workspace && currentWorkspace && *client->workspace != *currentWorkspace;
        if (!client->isHidden && !isElsewhere) {
            seen.push_back({*client, edgesOf(*client, window.frame), layerOf(client->role)});
        }
    }
    std::erase_if(seen, [](const SeenWindow &window) { return window.description.role == WindowRole::desktop; });
    return seen;
}

} // namespace

X11WindowList::X11WindowList(X11Connection &connection, const X11Screens &screens)
    : m_connection(connection), m_screens(screens)
{
    connection.atoms().prefetch({"_NET_CLIENT_LIST_STACKING",
                                 "_NET_CLIENT_LIST",
                                 "_NET_SUPPORTING_WM_CHECK",
                                 "_NET_CURRENT_DESKTOP",
                                 "_NET_WM_WINDOW_TYPE",
                                 "_NET_WM_STATE",
                                 "_NET_WM_STATE_HIDDEN",
                                 "_NET_WM_DESKTOP",
                                 "_NET_WM_PID",
                                 "_GTK_FRAME_EXTENTS",
                                 "_NET_WM_WINDOW_TYPE_NORMAL",
                                 "_NET_WM_WINDOW_TYPE_DIALOG",
                                 "_NET_WM_WINDOW_TYPE_UTILITY",
                                 "_NET_WM_WINDOW_TYPE_TOOLBAR",
                                 "_NET_WM_WINDOW_TYPE_SPLASH",
                                 "_NET_WM_WINDOW_TYPE_DESKTOP",
                                 "_NET_WM_WINDOW_TYPE_DOCK",
                                 "_NET_WM_WINDOW_TYPE_NOTIFICATION",
                                 "_NET_WM_WINDOW_TYPE_MENU",
                                 "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU",
                                 "_NET_WM_WINDOW_TYPE_POPUP_MENU",
                                 "_NET_WM_WINDOW_TYPE_TOOLTIP",
                                 "_NET_WM_WINDOW_TYPE_COMBO",
                                 "_NET_WM_WINDOW_TYPE_DND"});
}

std::vector<WindowInfo> X11WindowList::onScreenWindows() const
{
    const std::vector<SeenWindow> seen = seenWindows(m_connection);
    std::vector<xcb_window_t> ids;
    for (const SeenWindow &window : seen) {
        ids.push_back(window.description.id);
    }
    const auto processes = localProcesses(m_connection, ids);
    const auto own = qtResources();
    const ScreenSpace &space = m_screens.space();
    const double mainHeight = space.screens().empty() ? 0 : space.screens().front().frame.height;

    // Window managers and toolkits keep helpers mapped beside the screen.
    const auto isOnAScreen = [&](const QRect &frame) {
        return std::ranges::any_of(space.screens(),
                                   [&](const auto &screen) { return screen.native.intersects(frame); });
    };
    std::vector<WindowInfo> windows;
    for (const SeenWindow &window : seen) {
        if (!isOnAScreen(window.frame)) {
            continue;
        }
        const ClientWindow &description = window.description;
        std::optional<qint64> pid;
        if (own && own->contains(description.id)) {
            pid = QCoreApplication::applicationPid();
        } else if (const auto known = processes.find(description.id); known != processes.end()) {
            // A program in a container says the number it has in there.
            pid = known->second;
        } else if (description.pid) {
            pid = *description.pid;
        }
        const Rect points = space.fromNative(QRectF(window.frame));
        windows.push_back({.ownerProcessID = pid,
                           .layer = window.layer,
                           .bounds = WindowBounds{points.x, mainHeight - points.maxY(), points.width, points.height}});
    }
    return windows;
}

} // namespace lumenfold
