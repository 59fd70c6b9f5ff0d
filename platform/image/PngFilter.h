#pragma once

#include "platform/image/PngFormat.h"

#include <cstddef>
#include <vector>

/// The first half of encoding: a row of pixels becomes the bytes that are deflated. Only filters that need nothing but
/// the row itself are used, so that rows can be cut into bands anywhere.
namespace lumenfold::png {

/// The numbers are those of the file format.
enum class Filter : unsigned char {
    /// The channels as they are: the smaller file where few colours come again and again, as in text.
    none = 0,
    /// Each byte minus the same channel of the pixel before: the smaller file for photographs and gradients.
    sub = 1,
};

/// Bytes of one filtered row: the filter's number and the channels.
[[nodiscard]] constexpr std::size_t filteredRowBytes(int width, ColorType colorType)
{
    return 1 + static_cast<std::size_t>(width) * (colorType == ColorType::rgb ? 3 : 4);
}

/// Filters `width` pixels, at least one, as QImage keeps them in Format_RGB32 or Format_ARGB32. Writes exactly
/// `filteredRowBytes` bytes to `target`.
using RowFilter = void (*)(const unsigned char *pixels, int width, Filter filter, ColorType colorType,
                           unsigned char *target);

struct RowFilterVariant {
    const char *name;
    RowFilter filterRow;
};

/// Every variant that this machine can run, the fastest first and the portable one last. All of them give the same
/// bytes.
[[nodiscard]] const std::vector<RowFilterVariant> &rowFilterVariants();

} // namespace lumenfold::png
