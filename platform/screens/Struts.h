#pragma once

#include <QRect>
#include <QSize>

#include <cstdint>
#include <optional>
#include <vector>

namespace lumenfold {

/// The room that one dock asks to be kept free, in pixels from the edges of the whole root window (not of a screen), as
/// in _NET_WM_STRUT_PARTIAL. The spans are inclusive.
struct Strut {
    struct Edge {
        std::int64_t depth = 0;
        std::int64_t start = 0;
        std::int64_t end = 0;

        friend bool operator==(const Edge &, const Edge &) = default;
    };
    Edge left;
    Edge right;
    Edge top;
    Edge bottom;

    friend bool operator==(const Strut &, const Strut &) = default;
};

/// A dock: where its window is (root pixels) and what it reserves.
struct Dock {
    QRect window;
    Strut strut;

    friend bool operator==(const Dock &, const Dock &) = default;
};

/// From the 12 numbers of _NET_WM_STRUT_PARTIAL or the 4 of _NET_WM_STRUT, whose edges span everything. Nothing for
/// other counts and when no room is asked for.
[[nodiscard]] std::optional<Strut> strutFromItems(const std::vector<std::uint32_t> &items);

/// What the docks that stand on the screen leave of it; root pixels. A strut that would leave nothing does not count:
/// it is a mistake.
[[nodiscard]] QRect freeOfDocks(const QRect &screen, const QSize &root, const std::vector<Dock> &docks);

} // namespace lumenfold
