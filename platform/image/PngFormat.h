#pragma once

#include "platform/geometry/Geometry.h"

#include <QByteArrayView>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

/// What a PNG file is made of, as far as the encoder and the reader of headers need to know.
namespace lumenfold::png {

/// No side of a picture is longer than this many pixels: the largest that the toolkit can paint.
inline constexpr int maximumSide = 32768;
/// No picture has more pixels than this, which is 2 GiB of memory; a file that claims more is not believed.
inline constexpr std::int64_t maximumPixels = 512LL * 1024 * 1024;

/// No file of a picture of that size is longer: 8 bytes for each pixel, and something for what else it may hold.
[[nodiscard]] std::int64_t maximumFileBytes(PixelSize size);

inline constexpr std::array<unsigned char, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};

/// The bytes from the start of a file that hold its header: the signature and the IHDR chunk.
inline constexpr std::size_t headerBytes = 33;
/// Length, type and checksum: what a chunk has beside its data.
inline constexpr std::size_t chunkOverhead = 12;
/// Where in a chunk its data begins, behind length and type.
inline constexpr std::size_t chunkDataOffset = 8;

[[nodiscard]] bool isBelievable(PixelSize size);

/// The picture's size as the header says it; nothing when `file` does not begin like a PNG or the size is not
/// believable.
[[nodiscard]] std::optional<PixelSize> readHeader(QByteArrayView file);

/// True when `file` is a sequence of whole chunks up to its end chunk, and none of those that the pixels depend on has
/// a wrong checksum. What follows the end chunk does not matter.
[[nodiscard]] bool isIntact(QByteArrayView file);

/// Color types of the header, all with 8 bits a channel.
enum class ColorType : unsigned char { rgb = 2, rgba = 6 };

/// How many bytes of data the chunk has that begins there; `chunk` is at least `chunkDataOffset` long.
[[nodiscard]] std::uint32_t chunkDataBytes(QByteArrayView chunk);

/// True when `chunk` is a whole end chunk with the right checksum.
[[nodiscard]] bool isEndChunk(QByteArrayView chunk);

/// Writes signature and header; `target` has room for `headerBytes`.
void writeHeader(unsigned char *target, PixelSize size, ColorType colorType);

void writeBigEndian(unsigned char *target, std::uint32_t value);

/// A chunk whose data stands already at `chunkDataOffset`: writes length, type and checksum around it.
void sealChunk(unsigned char *chunk, const char (&type)[5], std::size_t dataBytes);

/// The Adler-32 of two runs of bytes one after the other, from their own sums and the length of the second.
[[nodiscard]] std::uint32_t combineAdler32(std::uint32_t first, std::uint32_t second, std::uint64_t secondBytes);

} // namespace lumenfold::png
