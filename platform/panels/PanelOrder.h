#pragma once

#include "platform/panels/Panel.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace lumenfold {

/// One request to the server: put `window` directly above or below `sibling`, or above everything when `sibling` is 0.
struct RestackStep {
    enum class Place { above, below };

    std::uint32_t window = 0;
    std::uint32_t sibling = 0;
    Place place = Place::above;

    friend bool operator==(const RestackStep &, const RestackStep &) = default;
};

/// The fewest steps that bring windows from the order `present` to the order `wanted` (both bottom to top). Windows
/// that keep their places are not touched; the steps are to be done in the given order. A window of `wanted` that is
/// not in `present` is placed, too; one of `present` that is not in `wanted` does not matter.
[[nodiscard]] std::vector<RestackStep> restackSteps(std::span<const std::uint32_t> present,
                                                    std::span<const std::uint32_t> wanted);

/// The visible panels of the program, bottom to top: first by level, then by when they were last ordered to the front.
class PanelOrder {
public:
    /// To the top of its level, whether or not it was in the order before.
    void orderFront(std::uint32_t window, PanelLevel level);
    void remove(std::uint32_t window);

    [[nodiscard]] const std::vector<std::uint32_t> &bottomToTop() const { return m_windows; }

private:
    std::vector<std::uint32_t> m_windows;
    /// How many of them, from the bottom, are floating; above them stand those of level screenSaver.
    std::size_t m_floating = 0;
};

} // namespace lumenfold
