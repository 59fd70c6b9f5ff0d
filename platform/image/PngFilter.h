#pragma once

#include "platform/image/PngFormat.h"

#include <cstddef>

/// The first half of encoding: a row of pixels becomes the bytes that are deflated. The Sub filter (each byte minus the
/// byte of the pixel before it) needs nothing but the row itself, so rows can be cut into bands anywhere.
namespace lumenfold::png {

/// Bytes of one filtered row: the filter's number and the channels.
[[nodiscard]] constexpr std::size_t filteredRowBytes(int width, ColorType colorType)
{
    return 1 + static_cast<std::size_t>(width) * (colorType == ColorType::rgb ? 3 : 4);
}

/// Filters `width` pixels as QImage keeps them in Format_RGB32 or Format_ARGB32 into `target`, which has room for
/// `filteredRowBytes` and not a byte more is written. Uses the best instructions of this machine.
void filterRow(const unsigned char *pixels, int width, ColorType colorType, unsigned char *target);

/// The same with no special instructions: what `filterRow` must equal.
void filterRowPortable(const unsigned char *pixels, int width, ColorType colorType, unsigned char *target);

} // namespace lumenfold::png
