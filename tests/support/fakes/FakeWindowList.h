#pragma once

#include "platform/windowlist/WindowList.h"

namespace lumenfold::test {

/// The windows that a test has put on screen.
class FakeWindowList : public WindowList {
public:
    [[nodiscard]] std::vector<WindowInfo> onScreenWindows() const override
    {
        ++requests;
        return windows;
    }

    /// An ordinary window (layer 0) of the program `owner`.
    [[nodiscard]] static WindowInfo ordinaryWindow(qint64 owner, const WindowBounds &bounds)
    {
        return {.ownerProcessID = owner, .layer = 0, .bounds = bounds};
    }

    /// Front to back.
    std::vector<WindowInfo> windows;
    /// How often somebody has asked.
    mutable int requests = 0;
};

} // namespace lumenfold::test
