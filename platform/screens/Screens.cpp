#include "platform/screens/Screens.h"

#include <algorithm>

namespace lumenfold {

Point Screens::fromToolkit(QPointF place) const
{
    const Rect frame = main().value_or(Screen()).frame;
    return {frame.minX() + place.x(), frame.maxY() - place.y()};
}

std::optional<Screen> Screens::main() const
{
    const std::vector<Screen> screens = all();
    if (screens.empty()) {
        return std::nullopt;
    }
    return screens.front();
}

std::optional<Screen> Screens::screenWithMouse() const
{
    const Point pointer = pointerLocation();
    const std::vector<Screen> screens = all();
    const auto found =
        std::ranges::find_if(screens, [&](const Screen &screen) { return screen.frame.contains(pointer); });
    if (found == screens.end()) {
        return std::nullopt;
    }
    return *found;
}

} // namespace lumenfold
