#pragma once

#include "platform/image/PngFormat.h"

#include <QImage>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace lumenfold::png {

/// Some rows of a picture.
struct Rows {
    int first = 0;
    int count = 0;
};

/// Rows that were filtered and deflated: an IDAT chunk of the file, from its length to its checksum.
struct EncodedBand {
    std::vector<unsigned char> chunk;
    /// The Adler-32 and the number of the bytes that were deflated, from which the sum over all bands is made.
    std::uint32_t adler = 1;
    std::uint64_t filteredBytes = 0;
};

/// Cuts a picture into the bands that are encoded side by side; at least one.
[[nodiscard]] std::vector<Rows> cutIntoBands(PixelSize size, ColorType colorType);

/// Encodes one band so that the chunks of all bands, in order, hold one zlib stream but for its last four bytes, the
/// checksum. Nothing when deflating fails. Any thread; throws std::bad_alloc.
[[nodiscard]] std::optional<EncodedBand> encodeBand(const QImage &picture, Rows rows, ColorType colorType);

} // namespace lumenfold::png
