#include "platform/image/AreaAverage.h"

#include <QtEndian>

#include <algorithm>

namespace lumenfold {
namespace {

/// So many bytes of 255 fit into the sums of whole rows.
constexpr int maximumWholeRows = 65535 / 255;

struct ChannelOffsets {
    std::size_t red;
    std::size_t green;
    std::size_t blue;
};

constexpr ChannelOffsets offsetsOf(AreaAverage::Layout layout)
{
    if (layout != AreaAverage::Layout::rgb32) {
        return {0, 1, 2};
    }
    return Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? ChannelOffsets{2, 1, 0} : ChannelOffsets{1, 2, 3};
}

} // namespace

AreaAverage::AreaAverage(PixelSize source, PixelSize target, Layout layout)
    : m_source(source)
    , m_target(target)
    , m_layout(layout)
    , m_pixelBytes(layout == Layout::rgb ? 3 : 4)
    , m_result(target.width, target.height, QImage::Format_RGB32)
    , m_sums(static_cast<std::size_t>(source.width) * m_pixelBytes)
    , m_wholeRows(m_sums.size())
{
}

void AreaAverage::addRow(const unsigned char *row)
{
    const std::int64_t begin = m_sourceEnd;
    m_sourceEnd += m_target.height;
    const std::int64_t targetEnd = std::int64_t{m_targetRow + 1} * m_source.height;
    if (m_sourceEnd > targetEnd) {
        addPart(row, static_cast<std::uint32_t>(targetEnd - begin));
        finishTargetRow();
        addPart(row, static_cast<std::uint32_t>(m_sourceEnd - targetEnd));
        return;
    }
    for (std::size_t at = 0; at < m_wholeRows.size(); ++at) {
        m_wholeRows[at] = static_cast<std::uint16_t>(m_wholeRows[at] + row[at]);
    }
    if (++m_wholeRowCount == maximumWholeRows) {
        addWholeRows();
    }
    if (m_sourceEnd == targetEnd) {
        finishTargetRow();
    }
}

void AreaAverage::addPart(const unsigned char *row, std::uint32_t weight)
{
    for (std::size_t at = 0; at < m_sums.size(); ++at) {
        m_sums[at] += row[at] * weight;
    }
}

void AreaAverage::addWholeRows()
{
    const auto weight = static_cast<std::uint32_t>(m_target.height);
    for (std::size_t at = 0; at < m_sums.size(); ++at) {
        m_sums[at] += m_wholeRows[at] * weight;
    }
    std::ranges::fill(m_wholeRows, 0);
    m_wholeRowCount = 0;
}

void AreaAverage::finishTargetRow()
{
    addWholeRows();
    if (m_result.isNull()) {
        return;
    }
    auto *target = reinterpret_cast<QRgb *>(m_result.scanLine(m_targetRow));
    const ChannelOffsets offsets = offsetsOf(m_layout);
    const auto total = static_cast<std::uint64_t>(m_source.width) * static_cast<std::uint64_t>(m_source.height);
    // To the right as downwards: a source pixel has `m_target.width` units, a target pixel `m_source.width`.
    std::int64_t sourceBegin = 0;
    const std::uint32_t *pixel = m_sums.data();
    for (int x = 0; x < m_target.width; ++x) {
        const std::int64_t begin = std::int64_t{x} * m_source.width;
        const std::int64_t end = begin + m_source.width;
        std::uint64_t red = 0;
        std::uint64_t green = 0;
        std::uint64_t blue = 0;
        while (true) {
            const std::int64_t sourceEnd = sourceBegin + m_target.width;
            const auto weight = static_cast<std::uint64_t>(std::min(sourceEnd, end) - std::max(sourceBegin, begin));
            red += pixel[offsets.red] * weight;
            green += pixel[offsets.green] * weight;
            blue += pixel[offsets.blue] * weight;
            if (sourceEnd > end) {
                break;
            }
            sourceBegin = sourceEnd;
            pixel += m_pixelBytes;
            if (sourceEnd == end) {
                break;
            }
        }
        const auto average = [total](std::uint64_t sum) { return static_cast<int>((sum + total / 2) / total); };
        target[x] = qRgb(average(red), average(green), average(blue));
    }
    std::ranges::fill(m_sums, 0);
    ++m_targetRow;
}

QImage AreaAverage::of(const QImage &picture, PixelSize target)
{
    AreaAverage average({picture.width(), picture.height()}, target, Layout::rgb32);
    for (int y = 0; y < picture.height(); ++y) {
        average.addRow(picture.constScanLine(y));
    }
    return average.result();
}

} // namespace lumenfold
