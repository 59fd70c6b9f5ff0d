#pragma once

#include "platform/geometry/Geometry.h"

#include <QImage>

#include <cstdint>
#include <vector>

namespace lumenfold {

/// Scales an opaque picture down, row by row: each pixel is the average of the area that it covers, to the nearest
/// integer, whatever the rows came from. Any thread.
class AreaAverage {
public:
    /// How a row's pixels lie in memory.
    enum class Layout {
        /// Three bytes: red, green, blue.
        rgb,
        /// Four: red, green, blue, and one that does not count.
        rgbx,
        /// As in QImage::Format_RGB32.
        rgb32,
    };

    /// No side of `target` is longer than that of `source`, and none is empty.
    AreaAverage(PixelSize source, PixelSize target, Layout layout);

    /// The next row from above; called once for each.
    void addRow(const unsigned char *row);

    /// After the last row. Format_RGB32; null without memory.
    [[nodiscard]] QImage result() const { return m_result; }

    /// The same for a whole picture in Format_RGB32.
    [[nodiscard]] static QImage of(const QImage &picture, PixelSize target);

private:
    void addPart(const unsigned char *row, std::uint32_t weight);
    void finishTargetRow();
    void addWholeRows();

    const PixelSize m_source;
    const PixelSize m_target;
    const Layout m_layout;
    const std::size_t m_pixelBytes;
    QImage m_result;

    /// Lengths downwards are counted in units of which a source row has `m_target.height` and a target row
    /// `m_source.height`, so that everything is a whole number.
    std::int64_t m_sourceEnd = 0;
    int m_targetRow = 0;
    /// The present target row so far: each byte of the source rows times how much of them it covers.
    std::vector<std::uint32_t> m_sums;
    /// Source rows that it covers wholly, which are most of them, are added up by themselves first.
    std::vector<std::uint16_t> m_wholeRows;
    int m_wholeRowCount = 0;
};

} // namespace lumenfold
