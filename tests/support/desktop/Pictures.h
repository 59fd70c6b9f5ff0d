#pragma once

#include "tests/support/desktop/XConnection.h"

#include <QImage>
#include <QRect>

#include <xcb/xcb.h>

namespace lumenfold::test {

/// A picture in which no two neighbouring places look alike, so that a shift by one pixel, a swapped channel or a
/// rounding shows. Another seed is another picture. Format RGB32.
[[nodiscard]] QImage knownPicture(QSize size, unsigned seed = 0);

/// Something that a person takes for a desktop: a landscape of smooth colours with fine grain, as expensive to encode
/// as a photograph. Format RGB32.
[[nodiscard]] QImage photographLike(QSize size, unsigned seed = 0);

/// What stands on the screen now, as another program reads it; the whole root window when no part is named. Pixels,
/// origin top left, format RGB32. The pointer is not in it.
[[nodiscard]] QImage rootPicture(const XConnection &connection, QRect part = {});

/// The contents of one window, without what covers it on a composited screen.
[[nodiscard]] QImage windowPicture(const XConnection &connection, xcb_window_t window);

/// A pixmap of the root's depth with the picture in it; the caller owns it.
[[nodiscard]] xcb_pixmap_t pixmapOf(const XConnection &connection, const QImage &picture);

/// How many pixels differ in colour; -1 when the sizes differ. Alpha counts only when both have it.
[[nodiscard]] qint64 differingPixels(const QImage &a, const QImage &b);

/// By how much any channel of any pixel differs at most, of 255; -1 when the sizes differ.
[[nodiscard]] int largestDifference(const QImage &a, const QImage &b);

/// Where the two differ, or an empty rectangle.
[[nodiscard]] QRect differingRegion(const QImage &a, const QImage &b);

} // namespace lumenfold::test
