#pragma once

#include "platform/geometry/Geometry.h"

#include <QObject>
#include <QPointF>

#include <cstdint>
#include <optional>
#include <vector>

namespace lumenfold {

/// Identifies one display for as long as it stays plugged in, and, as far as the platform can tell, across restarts.
/// Never 0.
using DisplayID = std::uint32_t;

/// A snapshot of one screen. Rectangles are global, in points (see Geometry.h).
struct Screen {
    DisplayID displayID = 0;
    Rect frame;
    /// The frame without panels, docks and bars that reserve room.
    Rect visibleFrame;
    /// Device pixels per point; a whole number on X11.
    double backingScale = 1;

    friend bool operator==(const Screen &, const Screen &) = default;
};

/// The screens of the session and the pointer among them.
///
/// Every call reads the present state: screens come and go while the program runs.
class Screens : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// In the system's order; the main (primary) screen is first. Empty while no screen is connected.
    [[nodiscard]] virtual std::vector<Screen> all() const = 0;

    /// The pointer in global points.
    [[nodiscard]] virtual Point pointerLocation() const = 0;

    /// A place that the toolkit tells in its own global coordinates, such as that of a mouse event, in global points.
    /// Unless a backend knows better, these are the main screen's points from its upper left corner, y downwards.
    [[nodiscard]] virtual Point fromToolkit(QPointF place) const;

    /// The primary screen; nothing while there is no screen.
    [[nodiscard]] std::optional<Screen> main() const;

    /// The first screen, in system order, whose frame contains the pointer.
    [[nodiscard]] std::optional<Screen> screenWithMouse() const;

Q_SIGNALS:
    /// A screen came, went, moved, or changed its size, visible frame or scale.
    void changed();
};

} // namespace lumenfold
