#include "platform/screens/Struts.h"

#include <algorithm>
#include <limits>

namespace lumenfold {
namespace {

/// Edges of a rectangle; `right` and `bottom` are the first pixels beyond it.
struct Edges {
    std::int64_t left = 0;
    std::int64_t top = 0;
    std::int64_t right = 0;
    std::int64_t bottom = 0;

    [[nodiscard]] bool isEmpty() const { return left >= right || top >= bottom; }
};

bool overlaps(const Strut::Edge &edge, std::int64_t low, std::int64_t high)
{
    return edge.depth > 0 && edge.start < high && edge.end >= low;
}

Edges reducedBy(const Strut &strut, const Edges &screen, const QSize &root)
{
    Edges rest = screen;
    if (overlaps(strut.left, screen.top, screen.bottom)) {
        rest.left = std::max(rest.left, strut.left.depth);
    }
    if (overlaps(strut.right, screen.top, screen.bottom)) {
        rest.right = std::min(rest.right, root.width() - strut.right.depth);
    }
    if (overlaps(strut.top, screen.left, screen.right)) {
        rest.top = std::max(rest.top, strut.top.depth);
    }
    if (overlaps(strut.bottom, screen.left, screen.right)) {
        rest.bottom = std::min(rest.bottom, root.height() - strut.bottom.depth);
    }
    return rest;
}

} // namespace

std::optional<Strut> strutFromItems(const std::vector<std::uint32_t> &items)
{
    constexpr std::size_t simple = 4;
    constexpr std::size_t partial = 12;
    constexpr std::int64_t everything = std::numeric_limits<std::int32_t>::max();
    if (items.size() != simple && items.size() != partial) {
        return std::nullopt;
    }
    const auto edge = [&](std::size_t index) {
        if (items.size() == simple) {
            return Strut::Edge{items[index], 0, everything};
        }
        return Strut::Edge{items[index], items[simple + 2 * index], items[simple + 2 * index + 1]};
    };
    const Strut strut{.left = edge(0), .right = edge(1), .top = edge(2), .bottom = edge(3)};
    if (strut.left.depth == 0 && strut.right.depth == 0 && strut.top.depth == 0 && strut.bottom.depth == 0) {
        return std::nullopt;
    }
    return strut;
}

QRect freeOfDocks(const QRect &screen, const QSize &root, const std::vector<Dock> &docks)
{
    Edges rest{screen.x(), screen.y(), screen.x() + screen.width(), screen.y() + screen.height()};
    const Edges whole = rest;
    for (const Dock &dock : docks) {
        if (!dock.window.intersects(screen)) {
            continue;
        }
        const Edges reduced = reducedBy(dock.strut, whole, root);
        const Edges both{std::max(rest.left, reduced.left), std::max(rest.top, reduced.top),
                         std::min(rest.right, reduced.right), std::min(rest.bottom, reduced.bottom)};
        if (!both.isEmpty()) {
            rest = both;
        }
    }
    return {static_cast<int>(rest.left), static_cast<int>(rest.top), static_cast<int>(rest.right - rest.left),
            static_cast<int>(rest.bottom - rest.top)};
}

} // namespace lumenfold
