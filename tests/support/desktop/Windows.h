#pragma once

#include "tests/support/desktop/XConnection.h"

#include <QList>
#include <QRect>
#include <QString>

#include <sys/types.h>

namespace lumenfold::test {

/// A window as the server and the other programs see it.
struct WindowInfo {
    xcb_window_t id = XCB_NONE;
    /// The child of the root that holds it: a window manager's frame, or itself.
    xcb_window_t topLevel = XCB_NONE;
    /// Without decoration; root pixels, origin top left.
    QRect frame;
    bool overrideRedirect = false;
    /// Of the client that made it, by the server's own knowledge; 0 when unknown.
    pid_t pid = 0;
    QString title{};
    int depth = 0;

    friend bool operator==(const WindowInfo &, const WindowInfo &) = default;
};

/// The windows that are on the screen now, lowest first, each window manager's frame replaced by the window inside.
[[nodiscard]] QList<WindowInfo> windowsOnScreen(const XConnection &connection);

/// Those of one process.
[[nodiscard]] QList<WindowInfo> windowsOf(const XConnection &connection, pid_t pid);

/// The process behind a window, from the server; 0 when unknown.
[[nodiscard]] pid_t processOf(const XConnection &connection, xcb_window_t window);

} // namespace lumenfold::test
