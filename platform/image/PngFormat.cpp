#include "platform/image/PngFormat.h"

#include <isa-l/crc.h>

#include <algorithm>
#include <cstring>

namespace lumenfold::png {
namespace {

constexpr std::size_t headerDataBytes = 13;
constexpr std::array<unsigned char, 8> headerChunkStart{0, 0, 0, headerDataBytes, 'I', 'H', 'D', 'R'};
constexpr std::uint32_t adlerModulus = 65521;

std::uint32_t readBigEndian(const unsigned char *source)
{
    return std::uint32_t{source[0]} << 24 | std::uint32_t{source[1]} << 16 | std::uint32_t{source[2]} << 8 | source[3];
}

} // namespace

bool isBelievable(PixelSize size)
{
    return !size.isEmpty() && size.width <= maximumSide && size.height <= maximumSide &&
           std::int64_t{size.width} * size.height <= maximumPixels;
}

std::int64_t maximumFileBytes(PixelSize size)
{
    constexpr std::int64_t beside = 64 * 1024 * 1024;
    return beside + std::int64_t{size.width} * size.height * 8;
}

std::optional<PixelSize> readHeader(QByteArrayView file)
{
    if (static_cast<std::size_t>(file.size()) < headerBytes) {
        return std::nullopt;
    }
    const auto *bytes = reinterpret_cast<const unsigned char *>(file.data());
    const unsigned char *chunk = bytes + signature.size();
    if (!std::equal(signature.begin(), signature.end(), bytes) ||
        !std::equal(headerChunkStart.begin(), headerChunkStart.end(), chunk)) {
        return std::nullopt;
    }
    const unsigned char *data = chunk + headerChunkStart.size();
    if (readBigEndian(data + headerDataBytes) != crc32_gzip_refl(0, chunk + 4, 4 + headerDataBytes)) {
        return std::nullopt;
    }
    const std::uint32_t width = readBigEndian(data);
    const std::uint32_t height = readBigEndian(data + 4);
    if (width > std::uint32_t{maximumSide} || height > std::uint32_t{maximumSide}) {
        return std::nullopt;
    }
    const PixelSize size{static_cast<int>(width), static_cast<int>(height)};
    return isBelievable(size) ? std::optional{size} : std::nullopt;
}

bool isIntact(QByteArrayView file)
{
    const auto *bytes = reinterpret_cast<const unsigned char *>(file.data());
    const auto size = static_cast<std::size_t>(file.size());
    std::size_t at = signature.size();
    while (at + chunkOverhead <= size) {
        const unsigned char *chunk = bytes + at;
        const std::size_t dataBytes = readBigEndian(chunk);
        if (dataBytes > size - at - chunkOverhead) {
            return false;
        }
        const unsigned char *type = chunk + 4;
        // A chunk whose name begins with a small letter is nothing that the pixels depend on.
        const bool critical = (type[0] & 0x20) == 0;
        const std::uint32_t checksum = readBigEndian(chunk + chunkDataOffset + dataBytes);
        if (critical && checksum != crc32_gzip_refl(0, type, 4 + dataBytes)) {
            return false;
        }
        if (std::memcmp(type, "IEND", 4) == 0) {
            return true;
        }
        at += chunkOverhead + dataBytes;
    }
    return false;
}

std::uint32_t chunkDataBytes(QByteArrayView chunk)
{
    return readBigEndian(reinterpret_cast<const unsigned char *>(chunk.data()));
}

bool isEndChunk(QByteArrayView chunk)
{
    return chunk == QByteArrayView("\0\0\0\0IEND\xae\x42\x60\x82", chunkOverhead);
}

void writeHeader(unsigned char *target, PixelSize size, ColorType colorType)
{
    std::copy(signature.begin(), signature.end(), target);
    unsigned char *chunk = target + signature.size();
    unsigned char *data = chunk + chunkDataOffset;
    writeBigEndian(data, static_cast<std::uint32_t>(size.width));
    writeBigEndian(data + 4, static_cast<std::uint32_t>(size.height));
    data[8] = 8;
    data[9] = static_cast<unsigned char>(colorType);
    data[10] = 0;
    data[11] = 0;
    data[12] = 0;
    sealChunk(chunk, "IHDR", headerDataBytes);
}

void writeBigEndian(unsigned char *target, std::uint32_t value)
{
    target[0] = static_cast<unsigned char>(value >> 24);
    target[1] = static_cast<unsigned char>(value >> 16);
    target[2] = static_cast<unsigned char>(value >> 8);
    target[3] = static_cast<unsigned char>(value);
}

void sealChunk(unsigned char *chunk, const char (&type)[5], std::size_t dataBytes)
{
    writeBigEndian(chunk, static_cast<std::uint32_t>(dataBytes));
    std::memcpy(chunk + 4, type, 4);
    writeBigEndian(chunk + chunkDataOffset + dataBytes, crc32_gzip_refl(0, chunk + 4, 4 + dataBytes));
}

std::uint32_t combineAdler32(std::uint32_t first, std::uint32_t second, std::uint64_t secondBytes)
{
    // Both sums begin with 1 in their lower half. Every byte of the second run adds the first run's lower half once
    // more to the upper half.
    const std::uint64_t lowFirst = first & 0xffff;
    const std::uint64_t lowSecond = second & 0xffff;
    const std::uint64_t low = (lowFirst + lowSecond + adlerModulus - 1) % adlerModulus;
    const std::uint64_t repeats = secondBytes % adlerModulus;
    const std::uint64_t high =
        ((first >> 16) + (second >> 16) + repeats * (lowFirst + adlerModulus - 1)) % adlerModulus;
    return static_cast<std::uint32_t>(high << 16 | low);
}

} // namespace lumenfold::png
