#pragma once

#include "platform/image/PngFormat.h"

#include <QByteArrayView>

#include <isa-l/igzip_lib.h>

#include <memory>
#include <optional>
#include <vector>

namespace lumenfold {

/// Reads PNG files of the usual kinds (8-bit RGB, as PngEncoder makes them of opaque pictures, and 8-bit RGB with
/// alpha, as web pages make them of any; all rows from above, no colour declared transparent), one row after the other
/// and so in little memory, and several times as fast as libraries that read every kind. Trusts nothing. Any thread.
class PngRows {
public:
    /// Nothing when the file is of another kind, or broken as far as can be told without reading its pixels. `file`
    /// must outlive the reader.
    [[nodiscard]] static std::optional<PngRows> open(QByteArrayView file);

    [[nodiscard]] PixelSize size() const { return m_size; }
    /// 3, or 4 with alpha.
    [[nodiscard]] std::size_t pixelBytes() const { return m_pixelBytes; }
    /// The next row: red, green, blue, and alpha if there is one, of each pixel. Null when the file is broken; then it
    /// stays so.
    [[nodiscard]] const unsigned char *next();

private:
    PngRows(QByteArrayView file, PixelSize size, std::size_t pixelBytes, std::size_t firstPixels);

    /// Leaves the two bytes behind with which zlib begins.
    [[nodiscard]] bool skipZlibHeader();
    [[nodiscard]] bool goToNextChunk();
    /// Makes at least so many inflated bytes ready; false when there are not so many, or they cannot be inflated.
    [[nodiscard]] bool makeReady(std::size_t bytes);

    QByteArrayView m_file;
    PixelSize m_size;
    std::size_t m_pixelBytes;
    std::size_t m_at;
    std::unique_ptr<inflate_state> m_inflating;
    /// The inflated bytes, ready ones between the two offsets.
    std::vector<unsigned char> m_inflated;
    std::size_t m_readyBegin = 0;
    std::size_t m_readyEnd = 0;
    /// The channels of a row, with a black pixel to the left.
    std::vector<unsigned char> m_row;
    std::vector<unsigned char> m_rowAbove;
    bool m_isBroken = false;
};

} // namespace lumenfold
