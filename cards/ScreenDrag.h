#pragma once

#include "platform/geometry/Geometry.h"

#include <QPointF>

#include <optional>

namespace lumenfold {

class Screens;

/// How far the pointer went since a button was pressed, on the screen and not in a window: the window moves or changes
/// its size under the pointer while it is dragged.
class ScreenDrag {
public:
    /// `screens` must outlive this.
    explicit ScreenDrag(const Screens &screens) : m_screens(screens) {}

    /// `place` is the press's own in the toolkit's global coordinates: by the time it is handled the pointer may be
    /// somewhere else.
    void begin(QPointF place);
    void end() { m_startMouse.reset(); }
    [[nodiscard]] bool isActive() const { return m_startMouse.has_value(); }
    /// The whole way from the press to `place`, in points, y upwards; nothing while no drag goes on.
    [[nodiscard]] std::optional<Size> translationTo(QPointF place) const;

private:
    const Screens &m_screens;
    /// Global points.
    std::optional<Point> m_startMouse;
};

} // namespace lumenfold
