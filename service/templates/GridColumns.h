#pragma once

#include <algorithm>

namespace lumenfold {

/// The columns of the grid of templates: as many as have room with at least this width each, with this gap between
/// them, and as wide as the room then lets them be. Points.
struct GridColumns {
    static constexpr int minimumWidth = 130;
    static constexpr int spacing = 12;

    /// At least one, however narrow the room is.
    int count = 1;
    /// Of one column.
    int width = 0;

    [[nodiscard]] static constexpr GridColumns in(int room)
    {
        const int count = std::max(1, (room + spacing) / (minimumWidth + spacing));
        return {.count = count, .width = std::max(1, (room + spacing) / count - spacing)};
    }
};

} // namespace lumenfold
