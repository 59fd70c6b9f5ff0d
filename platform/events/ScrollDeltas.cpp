#include "platform/events/ScrollDeltas.h"

#include <algorithm>

namespace lumenfold {

std::optional<ScrollDelta> smoothScroll(std::span<const ScrollAxis> axes, std::span<const AxisMovement> movements)
{
    ScrollDelta delta;
    for (const AxisMovement &movement : movements) {
        const auto axis = std::ranges::find(axes, movement.number, &ScrollAxis::number);
        if (axis == axes.end() || axis->increment == 0) {
            continue;
        }
        // The server counts down and right as positive.
        const double points = -pointsPerNotch * movement.value / axis->increment;
        (axis->direction == ScrollAxis::Direction::vertical ? delta.y : delta.x) += points;
    }
    return delta == ScrollDelta{} ? std::nullopt : std::optional(delta);
}

bool movesPointer(std::span<const ScrollAxis> axes, std::span<const AxisMovement> movements)
{
    return std::ranges::any_of(movements, [&](const AxisMovement &movement) {
        return std::ranges::find(axes, movement.number, &ScrollAxis::number) == axes.end();
    });
}

std::optional<ScrollDelta> wheelScroll(std::span<const ScrollAxis> axes, std::uint32_t button)
{
    const auto notch = [&](ScrollAxis::Direction direction, ScrollDelta delta) {
        const bool isSmooth = std::ranges::find(axes, direction, &ScrollAxis::direction) != axes.end();
        return isSmooth ? std::nullopt : std::optional(delta);
    };
    switch (button) {
    case 4:
        return notch(ScrollAxis::Direction::vertical, {.y = pointsPerNotch});
    case 5:
        return notch(ScrollAxis::Direction::vertical, {.y = -pointsPerNotch});
    case 6:
        return notch(ScrollAxis::Direction::horizontal, {.x = pointsPerNotch});
    case 7:
        return notch(ScrollAxis::Direction::horizontal, {.x = -pointsPerNotch});
    default:
        return std::nullopt;
    }
}

} // namespace lumenfold
