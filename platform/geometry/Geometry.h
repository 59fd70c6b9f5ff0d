#pragma once

#include <algorithm>
#include <cmath>

/// The one coordinate space of the program.
///
/// Lengths are points, doubles. The origin is the bottom left corner of the main screen and y grows upwards, on every
/// screen. These are types of their own so that a toolkit rectangle (origin top left, y down, whole numbers, and a
/// `right()` that is one less than the right edge) cannot slip in: the conversion happens once, at the window boundary
/// (see platform/screens/ScreenSpace.h).
namespace lumenfold {

struct Point {
    double x = 0;
    double y = 0;

    friend bool operator==(const Point &, const Point &) = default;
};

struct Size {
    double width = 0;
    double height = 0;

    friend bool operator==(const Size &, const Size &) = default;
};

/// A count of device pixels; never points.
struct PixelSize {
    int width = 0;
    int height = 0;

    [[nodiscard]] bool isEmpty() const { return width <= 0 || height <= 0; }
    friend bool operator==(const PixelSize &, const PixelSize &) = default;
};

/// A rectangle in points: (x, y) is its bottom left corner.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] double minX() const { return x; }
    [[nodiscard]] double midX() const { return x + width / 2; }
    [[nodiscard]] double maxX() const { return x + width; }
    [[nodiscard]] double minY() const { return y; }
    [[nodiscard]] double midY() const { return y + height / 2; }
    [[nodiscard]] double maxY() const { return y + height; }
    [[nodiscard]] Point origin() const { return {x, y}; }
    [[nodiscard]] Size size() const { return {width, height}; }
    [[nodiscard]] Point center() const { return {midX(), midY()}; }

    [[nodiscard]] bool isFinite() const
    {
        return std::isfinite(x) && std::isfinite(y) && std::isfinite(width) && std::isfinite(height);
    }

    /// Moved by (dx, dy), same size.
    [[nodiscard]] Rect offsetBy(double dx, double dy) const { return {x + dx, y + dy, width, height}; }

    /// Smaller by `margin` on every side; a negative margin enlarges.
    [[nodiscard]] Rect insetBy(double margin) const
    {
        return {x + margin, y + margin, width - 2 * margin, height - 2 * margin};
    }

    /// Larger by `margin` on every side.
    [[nodiscard]] Rect outsetBy(double margin) const { return insetBy(-margin); }

    /// The pointer rule of an unflipped space: the left and the upper edge belong to the rectangle, the right and the
    /// lower edge do not, so that of two screens that touch exactly one contains a point on their common edge.
    [[nodiscard]] bool contains(Point point) const
    {
        return point.x >= minX() && point.x < maxX() && point.y > minY() && point.y <= maxY();
    }

    [[nodiscard]] bool intersects(const Rect &other) const
    {
        return minX() < other.maxX() && other.minX() < maxX() && minY() < other.maxY() && other.minY() < maxY();
    }

    /// The smallest rectangle that holds both. An empty rectangle counts as its corner point.
    [[nodiscard]] Rect united(const Rect &other) const
    {
        const double left = std::min(minX(), other.minX());
        const double bottom = std::min(minY(), other.minY());
        return {left, bottom, std::max(maxX(), other.maxX()) - left, std::max(maxY(), other.maxY()) - bottom};
    }

    friend bool operator==(const Rect &, const Rect &) = default;
};

} // namespace lumenfold
