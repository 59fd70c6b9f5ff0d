#pragma once

#include "platform/x11/X11Connection.h"

#include <QCoroTask>
#include <QRect>
#include <QRegion>

#include <tl/expected.hpp>

#include <vector>

namespace lumenfold {

/// A top-level window that can be seen. Root pixels.
struct StackedWindow {
    xcb_window_t id = XCB_NONE;
    /// With its border.
    QRect frame;
    /// What of the frame the window fills; all of it unless it has a shape of its own.
    QRegion shape;
    xcb_visualid_t visual = 0;
    /// What a compositing manager multiplies its pixels with: 0 to 1.
    double opacity = 1;
};

/// The mapped top-level windows that touch `area`, bottom to top.
[[nodiscard]] QCoro::Task<tl::expected<std::vector<StackedWindow>, PlatformError>>
stackedWindows(x11::X11Connection &connection, QRegion area);

} // namespace lumenfold
