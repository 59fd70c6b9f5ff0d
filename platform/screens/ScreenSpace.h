#pragma once

#include "platform/geometry/Geometry.h"
#include "platform/screens/Screens.h"

#include <QPointF>
#include <QRect>
#include <QRectF>

#include <vector>

namespace lumenfold {

/// One screen in the two spaces that it has before it gets a place in ours.
struct ScreenGeometry {
    DisplayID displayID = 0;
    /// Device pixels of the X server's root window, origin top left, y down.
    QRect native;
    /// The toolkit's device-independent coordinates: it keeps the native origin and divides the size by the scale. When
    /// it missed that a screen moved, this is still the old place, from which it goes on converting.
    QRect qt;
    /// Device pixels per point. Greater than 0.
    double scale = 1;

    friend bool operator==(const ScreenGeometry &, const ScreenGeometry &) = default;
};

/// The one conversion between the X server's pixels, the toolkit's coordinates and our points (see Geometry.h).
///
/// The main screen has its lower left corner at (0, 0). Every other screen keeps its neighbours: a screen that touches
/// another one in pixels touches it in points, also when their scales differ, and screens that do not overlap in pixels
/// do not overlap in points. Where a set of scales allows only one of the two, not overlapping wins.
///
/// What is within a screen is converted by that screen's scale. Without a screen to say which, it is the one that holds
/// the most of the rectangle, else the nearest one, so that a rectangle may stick out. With no screen at all, all
/// spaces are one, turned over.
class ScreenSpace {
public:
    struct PlacedScreen : ScreenGeometry {
        /// Global points. The size is the exact native size over the scale, so it may be fractional.
        Rect frame;

        friend bool operator==(const PlacedScreen &, const PlacedScreen &) = default;
    };

    ScreenSpace() = default;
    /// The main screen first.
    explicit ScreenSpace(const std::vector<ScreenGeometry> &screens);

    /// In the order given to the constructor.
    [[nodiscard]] const std::vector<PlacedScreen> &screens() const { return m_screens; }
    /// Null when there is no such screen. Valid as long as this object.
    [[nodiscard]] const PlacedScreen *screen(DisplayID displayID) const;
    [[nodiscard]] const PlacedScreen *screenOf(const Rect &points) const;
    [[nodiscard]] const PlacedScreen *screenOfNative(const QRectF &native) const;
    [[nodiscard]] const PlacedScreen *screenOfQt(const QRectF &qt) const;

    [[nodiscard]] Rect fromNative(const QRectF &native) const;
    [[nodiscard]] Point fromNative(QPointF native) const;
    [[nodiscard]] QRectF toNative(const Rect &points) const;
    [[nodiscard]] QPointF toNative(Point point) const;
    /// The whole pixels nearest to the rectangle's edges; at least one pixel wide and high.
    [[nodiscard]] QRect toNativePixels(const Rect &points) const;

    [[nodiscard]] Rect fromQt(const QRectF &qt) const;
    [[nodiscard]] Point fromQt(QPointF qt) const;
    [[nodiscard]] QRectF toQt(const Rect &points) const;
    [[nodiscard]] QPointF toQt(Point point) const;

    /// The same by the scale and place of one screen, for what belongs to that screen wherever it stands.
    [[nodiscard]] static Rect fromNative(const QRectF &native, const PlacedScreen &screen);
    [[nodiscard]] static QRectF toNative(const Rect &points, const PlacedScreen &screen);
    [[nodiscard]] static Rect fromQt(const QRectF &qt, const PlacedScreen &screen);
    [[nodiscard]] static QRectF toQt(const Rect &points, const PlacedScreen &screen);

    friend bool operator==(const ScreenSpace &, const ScreenSpace &) = default;

private:
    std::vector<PlacedScreen> m_screens;
};

} // namespace lumenfold
