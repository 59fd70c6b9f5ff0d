#include "platform/image/PngRows.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace lumenfold {
namespace {

/// In a row's buffer: room for the black pixel at the left of the picture.
constexpr std::size_t rowMargin = 4;
/// Inflated at a time: several rows, because each call has a price of its own, and few enough to stay in the cache.
constexpr std::size_t inflatedBytes = 256 * 1024;
/// Bit depth, color type, compression, filtering and interlacing, where they are in the file.
constexpr std::size_t kindOffset = 24;
constexpr QByteArrayView kindOfColors("\x08\x02\0\0\0", 5);
constexpr QByteArrayView kindWithAlpha("\x08\x06\0\0\0", 5);

bool isChunk(QByteArrayView chunk, const char (&type)[5])
{
    return std::memcmp(chunk.data() + 4, type, 4) == 0;
}

/// Tells how something is to be shown rather than what. Which colour is transparent is not of that kind.
bool isAncillary(QByteArrayView chunk)
{
    constexpr char lowerCase = 0x20;
    return (chunk[4] & lowerCase) != 0 && !isChunk(chunk, "tRNS");
}

/// Where the pixels begin; nothing for a file with more in it than pixels, an end, and what can be passed over before
/// and after the pixels. The file is intact, so every chunk is whole.
std::optional<std::size_t> findPixels(QByteArrayView file)
{
    std::size_t at = png::headerBytes;
    const auto chunk = [&] { return file.sliced(static_cast<qsizetype>(at)); };
    const auto pass = [&] { at += png::chunkOverhead + png::chunkDataBytes(chunk()); };
    while (isAncillary(chunk())) {
        pass();
    }
    const std::size_t begin = at;
    while (isChunk(chunk(), "IDAT")) {
        pass();
    }
    const bool anyPixels = at > begin;
    while (isAncillary(chunk())) {
        pass();
    }
    return anyPixels && isChunk(chunk(), "IEND") ? std::optional(begin) : std::nullopt;
}

/// Nothing for other kinds.
std::optional<std::size_t> pixelBytesOf(QByteArrayView file)
{
    const QByteArrayView kind = file.sliced(kindOffset, kindOfColors.size());
    if (kind == kindOfColors) {
        return 3;
    }
    return kind == kindWithAlpha ? std::optional<std::size_t>(4) : std::nullopt;
}

unsigned char paeth(int left, int above, int aboveLeft)
{
    const int estimate = left + above - aboveLeft;
    const int toLeft = std::abs(estimate - left);
    const int toAbove = std::abs(estimate - above);
    const int toAboveLeft = std::abs(estimate - aboveLeft);
    if (toLeft <= toAbove && toLeft <= toAboveLeft) {
        return static_cast<unsigned char>(left);
    }
    return static_cast<unsigned char>(toAbove <= toAboveLeft ? above : aboveLeft);
}

/// Left of both rows lies a black pixel.
template <std::size_t pixelBytes>
bool unfilter(unsigned filter, unsigned char *row, const unsigned char *above, std::size_t bytes)
{
    const unsigned char *const left = row - pixelBytes;
    const unsigned char *const aboveLeft = above - pixelBytes;
    const auto add = [row](std::size_t at, int value) { row[at] = static_cast<unsigned char>(row[at] + value); };
    switch (filter) {
    case 0:
        return true;
    case 1: {
        std::array<unsigned char, pixelBytes> sum{};
        for (std::size_t at = 0; at + pixelBytes <= bytes; at += pixelBytes) {
            for (std::size_t channel = 0; channel < pixelBytes; ++channel) {
                row[at + channel] = sum[channel] = static_cast<unsigned char>(sum[channel] + row[at + channel]);
            }
        }
        return true;
    }
    case 2:
        for (std::size_t at = 0; at < bytes; ++at) {
            add(at, above[at]);
        }
        return true;
    case 3:
        for (std::size_t at = 0; at < bytes; ++at) {
            add(at, (left[at] + above[at]) / 2);
        }
        return true;
    case 4:
        for (std::size_t at = 0; at < bytes; ++at) {
            add(at, paeth(left[at], above[at], aboveLeft[at]));
        }
        return true;
    default:
        return false;
    }
}

} // namespace

std::optional<PngRows> PngRows::open(QByteArrayView file)
{
    const std::optional<PixelSize> size = png::readHeader(file);
    const std::optional<std::size_t> pixelBytes = size ? pixelBytesOf(file) : std::nullopt;
    const std::optional<std::size_t> begin = pixelBytes && png::isIntact(file) ? findPixels(file) : std::nullopt;
    if (!begin) {
        return std::nullopt;
    }
    PngRows rows(file, *size, *pixelBytes, *begin);
    return rows.skipZlibHeader() ? std::optional(std::move(rows)) : std::nullopt;
}

PngRows::PngRows(QByteArrayView file, PixelSize size, std::size_t pixelBytes, std::size_t firstPixels)
    : m_file(file)
    , m_size(size)
    , m_pixelBytes(pixelBytes)
    , m_at(firstPixels)
    , m_inflating(std::make_unique<inflate_state>())
    , m_row(rowMargin + static_cast<std::size_t>(size.width) * m_pixelBytes)
    , m_rowAbove(m_row.size())
{
    m_inflated.resize(std::max(inflatedBytes, m_row.size()));
    isal_inflate_init(m_inflating.get());
    m_inflating->crc_flag = ISAL_DEFLATE;
}

bool PngRows::skipZlibHeader()
{
    std::array<unsigned char, 2> header{};
    for (unsigned char &byte : header) {
        while (m_inflating->avail_in == 0) {
            if (!goToNextChunk()) {
                return false;
            }
        }
        byte = *m_inflating->next_in++;
        --m_inflating->avail_in;
    }
    // A window of 32 KiB and no dictionary, as everybody writes it.
    return header[0] == 0x78 && (header[1] & 0x20) == 0 && (header[0] * 256 + header[1]) % 31 == 0;
}

bool PngRows::goToNextChunk()
{
    const QByteArrayView chunk = m_file.sliced(static_cast<qsizetype>(m_at));
    if (!isChunk(chunk, "IDAT")) {
        return false;
    }
    const std::uint32_t bytes = png::chunkDataBytes(chunk);
    // The library only reads there.
    m_inflating->next_in = reinterpret_cast<std::uint8_t *>(const_cast<char *>(chunk.data() + png::chunkDataOffset));
    m_inflating->avail_in = bytes;
    m_at += png::chunkOverhead + bytes;
    return true;
}

bool PngRows::makeReady(std::size_t bytes)
{
    if (m_readyEnd - m_readyBegin >= bytes) {
        return true;
    }
    std::memmove(m_inflated.data(), m_inflated.data() + m_readyBegin, m_readyEnd - m_readyBegin);
    m_readyEnd -= std::exchange(m_readyBegin, 0);
    while (m_readyEnd < bytes) {
        const std::uint32_t inputBefore = m_inflating->avail_in;
        m_inflating->next_out = m_inflated.data() + m_readyEnd;
        m_inflating->avail_out = static_cast<std::uint32_t>(m_inflated.size() - m_readyEnd);
        if (isal_inflate(m_inflating.get()) < 0) {
            return false;
        }
        const std::size_t endBefore = std::exchange(m_readyEnd, m_inflated.size() - m_inflating->avail_out);
        const bool isStuck = m_readyEnd == endBefore && m_inflating->avail_in == inputBefore;
        if (isStuck && (inputBefore > 0 || !goToNextChunk())) {
            return false;
        }
    }
    return true;
}

const unsigned char *PngRows::next()
{
    const std::size_t bytes = m_row.size() - rowMargin;
    if (m_isBroken || !makeReady(bytes + 1)) {
        m_isBroken = true;
        return nullptr;
    }
    std::swap(m_row, m_rowAbove);
    const unsigned char *const inflated = m_inflated.data() + m_readyBegin;
    unsigned char *const row = m_row.data() + rowMargin;
    std::memcpy(row, inflated + 1, bytes);
    m_readyBegin += bytes + 1;
    const auto unfilterRow = m_pixelBytes == 3 ? &unfilter<3> : &unfilter<4>;
    m_isBroken = !unfilterRow(*inflated, row, m_rowAbove.data() + rowMargin, bytes);
    return m_isBroken ? nullptr : row;
}

} // namespace lumenfold
