#pragma once

#include <QByteArray>

#include <cstdint>
#include <vector>

/// PNG files taken apart and put together with zlib alone.
namespace lumenfold::test {

struct PngChunk {
    QByteArray type;
    QByteArray data;
};

/// The chunks of a file, in order. Throws std::runtime_error when the signature, a length or a checksum is wrong, or
/// anything follows the last chunk.
[[nodiscard]] std::vector<PngChunk> chunksOf(const QByteArray &file);

/// The bytes of all IDAT chunks together, inflated. Throws std::runtime_error unless they are exactly one zlib stream.
[[nodiscard]] QByteArray inflatedPixelData(const std::vector<PngChunk> &chunks);

[[nodiscard]] QByteArray pngFile(const std::vector<PngChunk> &chunks);

struct PngHeader {
    std::uint32_t width = 1;
    std::uint32_t height = 1;
    unsigned char bitDepth = 8;
    unsigned char colorType = 2;
    unsigned char interlace = 0;
};

[[nodiscard]] PngChunk headerChunk(const PngHeader &header);
/// `rows` are the filtered rows, each with the number of its filter before it.
[[nodiscard]] PngChunk pixelChunk(const QByteArray &rows);

} // namespace lumenfold::test
