#pragma once

#include "platform/geometry/Geometry.h"
#include "platform/screencapture/ScreenCapture.h"

#include <QRect>

#include <optional>

namespace lumenfold {

/// Which device pixels of a display make a picture.
struct PixelCrop {
    /// Origin at the display's upper left pixel. May stick out of the display.
    QRect source;
    /// Of the picture. When it is not the size of `source`, the source is scaled to it.
    PixelSize output;

    [[nodiscard]] bool isScaled() const { return source.width() != output.width || source.height() != output.height; }
    friend bool operator==(const PixelCrop &, const PixelCrop &) = default;
};

/// The crop for a configuration on a display of `display` pixels with `scale` pixels per point.
///
/// Where the picture asked for has the size of the source to within a pixel, it is cut out and never scaled, beginning
/// at the pixel nearest to the source's corner: an area of 100.4 x 50.6 points at scale 2 asked for as 200 x 101 is 200
/// x 101 pixels of the screen, as they are. Otherwise the whole pixels nearest to the source's edges are scaled.
///
/// Nothing when the numbers make no picture: a size that is not positive, not finite, or beyond what X can hold.
[[nodiscard]] std::optional<PixelCrop> pixelCrop(PixelSize display, double scale,
                                                 const StreamConfiguration &configuration);

} // namespace lumenfold
