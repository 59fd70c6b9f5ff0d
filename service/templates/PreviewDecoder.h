#pragma once

#include "platform/geometry/Geometry.h"

#include <QByteArray>
#include <QImage>

namespace lumenfold {

/// A picture is downloaded and kept up to this length.
inline constexpr qint64 maximumPreviewBytes = qint64{4} * 1024 * 1024;
/// A picture that claims a longer side, or more pixels, is not believed; reading one takes at most some 100 MiB.
inline constexpr int maximumPreviewSide = 8192;
inline constexpr qint64 maximumPreviewPixels = qint64{4096} * 4096;

/// Reads the picture of a template, PNG or JPEG, and scales it down into `bounds` (pixels), its proportions kept. Never
/// scales up. Trusts nothing: what is of another kind, too large, broken or cut short gives a null picture. Any thread.
[[nodiscard]] QImage decodePreview(const QByteArray &bytes, PixelSize bounds);

} // namespace lumenfold
