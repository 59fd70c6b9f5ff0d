#pragma once

#include "platform/geometry/Geometry.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace lumenfold {

/// The numbers are the bits' positions in an event mask, as on macOS: 1 << 5 and 1 << 22 give 0x400020 together.
enum class PointerEventType : std::uint32_t { mouseMoved = 5, scrollWheel = 22 };

/// Where in a touch gesture a scroll event stands. Devices without gestures (a wheel) always say `none`.
enum class GesturePhase { none, mayBegin, began, changed, stationary, ended, cancelled };

struct PointerEvent {
    PointerEventType type = PointerEventType::mouseMoved;
    /// Global points.
    Point location;
    /// Points; how far the content is to move, as on macOS: a scroll upwards (content moves down) is positive in y, one
    /// to the left (content moves right) positive in x. With natural scrolling that is the fingers' own direction.
    double scrollingDeltaX = 0;
    double scrollingDeltaY = 0;
    GesturePhase phase = GesturePhase::none;
    GesturePhase momentumPhase = GesturePhase::none;
    /// Seconds of the event clock (monotonic).
    double timestamp = 0;
};

/// Keeps a monitor installed for as long as it lives.
class EventMonitor {
public:
    EventMonitor() = default;
    EventMonitor(const EventMonitor &) = delete;
    EventMonitor &operator=(const EventMonitor &) = delete;
    virtual ~EventMonitor() = default;
};

/// Sees pointer events without ever taking them from the window they are meant for.
class EventMonitors {
public:
    using Handler = std::function<void(const PointerEvent &)>;

    EventMonitors() = default;
    EventMonitors(const EventMonitors &) = delete;
    EventMonitors &operator=(const EventMonitors &) = delete;
    virtual ~EventMonitors() = default;

    /// Events over the windows of other programs. `mask` holds 1 << type for each wanted type.
    [[nodiscard]] virtual std::unique_ptr<EventMonitor> addGlobalMonitor(std::uint32_t mask, Handler handler) = 0;

    /// Events over this program's own windows.
    [[nodiscard]] virtual std::unique_ptr<EventMonitor> addLocalMonitor(std::uint32_t mask, Handler handler) = 0;
};

[[nodiscard]] constexpr std::uint32_t eventMask(PointerEventType type)
{
    return 1U << static_cast<std::uint32_t>(type);
}

} // namespace lumenfold
