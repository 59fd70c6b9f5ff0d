#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace lumenfold {

/// What one notch of a wheel scrolls, in points: one line, as a Mac counts it for devices that have no finer measure.
/// Smooth devices count parts of notches.
inline constexpr double pointsPerNotch = 10;

/// An axis on which a pointing device reports smooth scrolling.
struct ScrollAxis {
    enum class Direction { vertical, horizontal };

    std::uint16_t number = 0;
    Direction direction = Direction::vertical;
    /// What the axis counts for one notch; negative when it counts the other way round.
    double increment = 1;

    friend bool operator==(const ScrollAxis &, const ScrollAxis &) = default;
};

/// How far one axis of a device went in one event. Raw events carry the way, not the place, so there is no earlier
/// place to compare with, and nothing to jump when the user changes from one device to another.
struct AxisMovement {
    std::uint16_t number = 0;
    double value = 0;
};

/// See PointerEvent for the signs.
struct ScrollDelta {
    double x = 0;
    double y = 0;

    friend bool operator==(const ScrollDelta &, const ScrollDelta &) = default;
};

/// Nothing when the event did not scroll.
[[nodiscard]] std::optional<ScrollDelta> smoothScroll(std::span<const ScrollAxis> axes,
                                                      std::span<const AxisMovement> movements);

/// Whether the event moved the pointer, too, or instead.
[[nodiscard]] bool movesPointer(std::span<const ScrollAxis> axes, std::span<const AxisMovement> movements);

/// Buttons 4 to 7 are the notches of a wheel: up, down, left, right. Nothing for other buttons, and nothing when the
/// device has an axis for that direction: the server then makes a movement of every press and a press of every whole
/// notch, and only the movement counts.
[[nodiscard]] std::optional<ScrollDelta> wheelScroll(std::span<const ScrollAxis> axes, std::uint32_t button);

} // namespace lumenfold
