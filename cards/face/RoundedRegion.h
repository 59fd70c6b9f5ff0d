#pragma once

#include <QRectF>
#include <QRegion>

namespace lumenfold {

/// The pixels whose middle lies in a rounded rectangle, at that many pixels per unit of its coordinates. A circle is a
/// rectangle whose radius is half its side. The toolkit's own regions of round shapes have corners, because their
/// points are whole numbers.
[[nodiscard]] QRegion roundedRegion(const QRectF &rect, double radius, double scale);

} // namespace lumenfold
