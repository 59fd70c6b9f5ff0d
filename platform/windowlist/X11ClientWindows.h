#pragma once

#include "platform/x11/X11Connection.h"

#include <QMargins>
#include <QRect>

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

/// What X11WindowList asks the server, all questions of one kind at once.
namespace lumenfold::x11 {

/// What kind of window a program or the window manager says it is.
enum class WindowRole { normal, desktop, dock, menu, notification };

/// A window that the window manager manages. Pixels.
struct ClientWindow {
    xcb_window_t id = XCB_NONE;
    WindowRole role = WindowRole::normal;
    bool isHidden = false;
    /// The workspace it is on; nothing when the window manager has no workspaces or shows it on all.
    std::optional<std::uint32_t> workspace;
    /// The process, as the program says; may be wrong.
    std::optional<std::uint32_t> pid;
    /// The invisible border that the program draws around itself.
    QMargins invisibleBorder;
    /// The child of the root window that it is or is in.
    xcb_window_t topLevel = XCB_NONE;
    /// Root pixels, without a border or decoration.
    QRect inside;
};

/// A child of the root window that can be seen.
struct TopLevelWindow {
    xcb_window_t id = XCB_NONE;
    /// Root pixels; with its border, but without what its shape cuts off.
    QRect frame;
    bool isOverrideRedirect = false;
};

/// The windows of _NET_CLIENT_LIST_STACKING (or _NET_CLIENT_LIST); nothing when no window manager keeps such a list.
[[nodiscard]] std::optional<std::vector<ClientWindow>> clientWindows(X11Connection &connection);

/// Bottom to top.
[[nodiscard]] std::vector<TopLevelWindow> topLevelWindows(X11Connection &connection);

/// The role and process of windows that no window manager manages, in the same order; their other fields are empty.
[[nodiscard]] std::vector<ClientWindow> describedWindows(X11Connection &connection,
                                                         const std::vector<xcb_window_t> &windows);

/// The processes behind windows by the server's own knowledge; those that it does not know are missing.
[[nodiscard]] std::map<xcb_window_t, qint64> localProcesses(X11Connection &connection,
                                                            const std::vector<xcb_window_t> &windows);

} // namespace lumenfold::x11
