#include "platform/screens/ScreenSpace.h"

#include "platform/screens/ScreenPlacement.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace lumenfold {
namespace {

using PlacedScreen = ScreenSpace::PlacedScreen;

QRectF asQRectF(const Rect &rect)
{
    return {rect.x, rect.y, rect.width, rect.height};
}

/// How far apart two rectangles are; 0 when they touch or overlap.
double distanceBetween(const QRectF &a, const QRectF &b)
{
    const double dx = std::max({0.0, a.left() - b.right(), b.left() - a.right()});
    const double dy = std::max({0.0, a.top() - b.bottom(), b.top() - a.bottom()});
    return std::hypot(dx, dy);
}

/// The first of the screens that hold the most of `rect`; the nearest one when none holds any of it. `areaOf` gives a
/// screen's area in the space of `rect`.
template <typename AreaOf>
const PlacedScreen *screenFor(const std::vector<PlacedScreen> &screens, const QRectF &rect, AreaOf areaOf)
{
    const PlacedScreen *best = nullptr;
    double bestShare = 0;
    double bestDistance = std::numeric_limits<double>::infinity();
    for (const PlacedScreen &screen : screens) {
        const QRectF area = areaOf(screen);
        const QRectF common = area.intersected(rect);
        const double share = common.isEmpty() ? 0 : common.width() * common.height();
        const double distance = distanceBetween(area, rect);
        if (best == nullptr || share > bestShare || (bestShare == 0 && distance < bestDistance)) {
            best = &screen;
            bestShare = share;
            bestDistance = distance;
        }
    }
    return best;
}

/// The pixel whose upper left corner is the point: points on a common edge belong to the screen right of and below it.
QRectF pixelAt(QPointF point)
{
    constexpr double inside = 1e-3;
    return {point, QSizeF(inside, inside)};
}

/// In an unflipped space a point on a common edge belongs to the screen right of and below it, too (see
/// Rect::contains).
Rect pixelAt(Point point)
{
    constexpr double inside = 1e-3;
    return {point.x, point.y - inside, inside, inside};
}

} // namespace

ScreenSpace::ScreenSpace(const std::vector<ScreenGeometry> &screens)
{
    const std::vector<Rect> frames = placedFrames(screens);
    for (std::size_t index = 0; index < screens.size(); ++index) {
        m_screens.push_back({screens[index], frames[index]});
    }
}

const PlacedScreen *ScreenSpace::screen(DisplayID displayID) const
{
    const auto found = std::ranges::find(m_screens, displayID, &PlacedScreen::displayID);
    return found == m_screens.end() ? nullptr : &*found;
}

const PlacedScreen *ScreenSpace::screenOf(const Rect &points) const
{
    return screenFor(m_screens, asQRectF(points), [](const PlacedScreen &screen) { return asQRectF(screen.frame); });
}

const PlacedScreen *ScreenSpace::screenOfNative(const QRectF &native) const
{
    return screenFor(m_screens, native, [](const PlacedScreen &screen) { return QRectF(screen.native); });
}

const PlacedScreen *ScreenSpace::screenOfQt(const QRectF &qt) const
{
    return screenFor(m_screens, qt, [](const PlacedScreen &screen) { return QRectF(screen.qt); });
}

Rect ScreenSpace::fromNative(const QRectF &native) const
{
    return fromNative(native, m_screens.empty() ? PlacedScreen() : *screenOfNative(native));
}

Point ScreenSpace::fromNative(QPointF native) const
{
    const PlacedScreen screen = m_screens.empty() ? PlacedScreen() : *screenOfNative(pixelAt(native));
    return fromNative(QRectF(native, QSizeF(0, 0)), screen).origin();
}

QRectF ScreenSpace::toNative(const Rect &points) const
{
    return toNative(points, m_screens.empty() ? PlacedScreen() : *screenOf(points));
}

QPointF ScreenSpace::toNative(Point point) const
{
    const PlacedScreen screen = m_screens.empty() ? PlacedScreen() : *screenOf(pixelAt(point));
    return toNative(Rect{point.x, point.y, 0, 0}, screen).topLeft();
}

QRect ScreenSpace::toNativePixels(const Rect &points) const
{
    const QRectF native = toNative(points);
    const QPoint topLeft = native.topLeft().toPoint();
    const QPoint bottomRight = native.bottomRight().toPoint();
    return {topLeft, QSize(bottomRight.x() - topLeft.x(), bottomRight.y() - topLeft.y()).expandedTo({1, 1})};
}

Rect ScreenSpace::fromQt(const QRectF &qt) const
{
    return fromQt(qt, m_screens.empty() ? PlacedScreen() : *screenOfQt(qt));
}

Point ScreenSpace::fromQt(QPointF qt) const
{
    const PlacedScreen screen = m_screens.empty() ? PlacedScreen() : *screenOfQt(pixelAt(qt));
    return fromQt(QRectF(qt, QSizeF(0, 0)), screen).origin();
}

QRectF ScreenSpace::toQt(const Rect &points) const
{
    return toQt(points, m_screens.empty() ? PlacedScreen() : *screenOf(points));
}

QPointF ScreenSpace::toQt(Point point) const
{
    const PlacedScreen screen = m_screens.empty() ? PlacedScreen() : *screenOf(pixelAt(point));
    return toQt(Rect{point.x, point.y, 0, 0}, screen).topLeft();
}

Rect ScreenSpace::fromNative(const QRectF &native, const PlacedScreen &screen)
{
    const double width = native.width() / screen.scale;
    const double height = native.height() / screen.scale;
    return {screen.frame.minX() + (native.x() - screen.native.x()) / screen.scale,
            screen.frame.maxY() - (native.y() - screen.native.y()) / screen.scale - height, width, height};
}

QRectF ScreenSpace::toNative(const Rect &points, const PlacedScreen &screen)
{
    return {screen.native.x() + (points.minX() - screen.frame.minX()) * screen.scale,
            screen.native.y() + (screen.frame.maxY() - points.maxY()) * screen.scale, points.width * screen.scale,
            points.height * screen.scale};
}

Rect ScreenSpace::fromQt(const QRectF &qt, const PlacedScreen &screen)
{
    const QPointF origin = screen.qt.topLeft();
    return fromNative(QRectF(origin + (qt.topLeft() - origin) * screen.scale, qt.size() * screen.scale), screen);
}

QRectF ScreenSpace::toQt(const Rect &points, const PlacedScreen &screen)
{
    const QPointF origin = screen.qt.topLeft();
    const QRectF native = toNative(points, screen);
    return {origin + (native.topLeft() - origin) / screen.scale, native.size() / screen.scale};
}

} // namespace lumenfold
