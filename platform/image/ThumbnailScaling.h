#pragma once

#include "platform/geometry/Geometry.h"
#include "platform/image/ThumbnailKeeper.h"

#include <QByteArray>
#include <QImage>

/// Large pictures made small. Pure.
namespace lumenfold {

/// A copy of up to this many times the width that is needed is scaled down in painting.
inline constexpr double largestThumbnailExcess = 1.8;

/// A copy in which every pixel says that it is opaque. Null without memory.
[[nodiscard]] QImage opaqueCopy(const QImage &pixels);

/// Whether that is what becomes of a picture of `size`, or what may stand for it. It comes from a file that anybody may
/// have written.
[[nodiscard]] bool isThumbnail(const QImage &found, PixelSize size, PixelSize bounds, ThumbnailFit fit);

/// A copy that fits into the bounds, in its own proportions, and is not scaled up; RGB32 pixels become opaque. Null for
/// null pixels and empty bounds.
[[nodiscard]] QImage scaledInto(const QImage &pixels, PixelSize bounds);

/// The same from a PNG of the usual kinds, without ever having all pixels; null for any other file, for one with a
/// pixel that is not opaque, and for a picture that fits as it is.
[[nodiscard]] QImage scaledInto(const QByteArray &png, PixelSize bounds);

} // namespace lumenfold
