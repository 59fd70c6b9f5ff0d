#pragma once

#include <QtGlobal>

#include <optional>
#include <vector>

namespace lumenfold {

/// Where a window stands: global points, but with the origin at the TOP left of the main screen and y downwards, which
/// is how window servers tell it. Whoever wants a `Rect` turns it over with the height of the main screen.
struct WindowBounds {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    friend bool operator==(const WindowBounds &, const WindowBounds &) = default;
};

/// One window of any program. What the platform does not know is absent.
struct WindowInfo {
    std::optional<qint64> ownerProcessID;
    /// 0 for ordinary windows; anything else for docks, panels, menus, notifications and the desktop itself.
    std::optional<int> layer;
    /// What the user sees as the window's edges: with its title bar, without invisible borders and shadows.
    std::optional<WindowBounds> bounds;

    friend bool operator==(const WindowInfo &, const WindowInfo &) = default;
};

class WindowList {
public:
    WindowList() = default;
    WindowList(const WindowList &) = delete;
    WindowList &operator=(const WindowList &) = delete;
    virtual ~WindowList() = default;

    /// The windows that are on screen now (not minimised, not on another workspace), front to back, without the
    /// desktop.
    [[nodiscard]] virtual std::vector<WindowInfo> onScreenWindows() const = 0;
};

} // namespace lumenfold
