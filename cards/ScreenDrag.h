#pragma once

#include "platform/geometry/Geometry.h"

#include <optional>

namespace lumenfold {

class Screens;

/// How far the pointer went since a button was pressed, on the screen and not in a window: the window moves or changes
/// its size under the pointer while it is dragged.
class ScreenDrag {
public:
    /// `screens` must outlive this.
    explicit ScreenDrag(const Screens &screens) : m_screens(screens) {}

    void begin();
    void end() { m_startMouse.reset(); }
    [[nodiscard]] bool isActive() const { return m_startMouse.has_value(); }
    /// The whole way since the beginning in points, y upwards; nothing while no drag goes on.
    [[nodiscard]] std::optional<Size> translation() const;

private:
    const Screens &m_screens;
    /// Global points.
    std::optional<Point> m_startMouse;
};

} // namespace lumenfold
