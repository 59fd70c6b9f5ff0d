#pragma once

#include "platform/statusitem/StatusItem.h"

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QRect>

namespace lumenfold {

/// Where the badge lies on a picture, in its pixels.
struct BadgePlacement {
    QRect circle;
    /// Of the black ring, which lies within the circle.
    int ringWidth = 0;

    friend bool operator==(const BadgePlacement &, const BadgePlacement &) = default;
};

/// A circle of 7 points with a ring of 1, 3 points from the right and the upper edge of a picture of 22 points; other
/// sizes in proportion, on whole pixels.
[[nodiscard]] BadgePlacement badgePlacement(int side);

/// What a status area shows.
struct StatusIcon {
    StatusImage image;
    bool hasBadge = false;

    friend bool operator==(const StatusIcon &, const StatusIcon &) = default;
};

/// The picture `side` pixels wide and high, a template in `templateColor`; a transparent one if there is no drawing.
[[nodiscard]] QImage paintStatusIcon(const StatusIcon &icon, int side, const QColor &templateColor);

/// The drawing for desktops that colour pictures in their own way (names that end in "-symbolic"): they give paths
/// their own colour and leave the badge as it is. Whoever does not sees `templateColor`.
[[nodiscard]] QByteArray symbolicDrawing(const StatusIcon &icon, const QColor &templateColor);

} // namespace lumenfold
