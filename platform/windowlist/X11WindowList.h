#pragma once

#include "platform/screens/X11Screens.h"
#include "platform/windowlist/WindowList.h"
#include "platform/x11/X11Connection.h"

namespace lumenfold {

/// The windows as the server stacks them, described by what the window manager (EWMH) and the programs say about them.
/// Without such a window manager every window that does not ask to be left alone is an ordinary one.
class X11WindowList : public WindowList {
public:
    /// Both must outlive this.
    X11WindowList(x11::X11Connection &connection, const X11Screens &screens);

    /// Waits for the server, a handful of round trips for any number of windows.
    [[nodiscard]] std::vector<WindowInfo> onScreenWindows() const override;

private:
    x11::X11Connection &m_connection;
    const X11Screens &m_screens;
};

} // namespace lumenfold
