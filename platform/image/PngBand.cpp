#include "platform/image/PngBand.h"

#include "platform/image/PngFilter.h"

#include <isa-l/igzip_lib.h>

#include <algorithm>
#include <array>
#include <memory>

namespace lumenfold::png {
namespace {

/// How many filtered bytes a band has, about: few enough to stay in a core's own cache between filtering and deflating,
/// enough for the loss at a band's edges (back-references do not reach across) not to show.
constexpr std::size_t bandBytes = 512 * 1024;
/// How many bytes in the middle of a band are deflated on trial.
constexpr std::size_t sampleBytes = 32 * 1024;

/// What zlib says about itself before the first band: a window of 32 KiB, the fastest level, no dictionary.
constexpr std::array<unsigned char, 2> zlibHeader{0x78, 0x01};

enum class Ending { moreFollows, endOfStream };

/// The memory of one encoding thread, used again for each band and freed when the thread ends.
class Workbench {
public:
    [[nodiscard]] static Workbench &ofThisThread()
    {
        thread_local Workbench workbench;
        return workbench;
    }

    /// Makes room for a band of this many filtered bytes.
    void prepare(std::size_t filteredBytes)
    {
        if (m_capacity < filteredBytes) {
            m_capacity = 0;
            m_filtered = std::make_unique_for_overwrite<unsigned char[]>(filteredBytes);
            m_deflated = std::make_unique_for_overwrite<unsigned char[]>(deflatedCapacity(filteredBytes));
            m_capacity = filteredBytes;
        }
    }

    void filter(const QImage &picture, Rows rows, Filter filter, ColorType colorType)
    {
        const RowFilter filterRow = rowFilterVariants().front().filterRow;
        const std::size_t rowBytes = filteredRowBytes(picture.width(), colorType);
        for (int row = 0; row < rows.count; ++row) {
            filterRow(picture.constScanLine(rows.first + row), picture.width(), filter, colorType,
                      m_filtered.get() + rowBytes * static_cast<std::size_t>(row));
        }
        m_filteredBytes = rowBytes * static_cast<std::size_t>(rows.count);
    }

    /// Deflates what was filtered last and returns the number of bytes that came out.
    [[nodiscard]] std::optional<std::size_t> deflate(Ending ending)
    {
        isal_zstream stream;
        isal_deflate_stateless_init(&stream);
        stream.level = 1;
        stream.level_buf = m_levelBuffer.get();
        stream.level_buf_size = ISAL_DEF_LVL1_DEFAULT;
        stream.flush = ending == Ending::endOfStream ? NO_FLUSH : FULL_FLUSH;
        stream.end_of_stream = ending == Ending::endOfStream ? 1 : 0;
        stream.next_in = m_filtered.get();
        stream.avail_in = static_cast<std::uint32_t>(m_filteredBytes);
        stream.next_out = m_deflated.get();
        stream.avail_out = static_cast<std::uint32_t>(deflatedCapacity(m_filteredBytes));
        if (isal_deflate_stateless(&stream) != COMP_OK || stream.avail_in != 0) {
            return std::nullopt;
        }
        return stream.total_out;
    }

    [[nodiscard]] std::uint32_t adler() const { return isal_adler32(1, m_filtered.get(), m_filteredBytes); }
    [[nodiscard]] std::size_t filteredBytes() const { return m_filteredBytes; }
    [[nodiscard]] const unsigned char *deflated() const { return m_deflated.get(); }

private:
    /// Stored blocks of 65,535 bytes with 5 bytes each are the worst that comes out.
    static std::size_t deflatedCapacity(std::size_t bytes) { return bytes + 5 * (bytes / 65535 + 2) + 64; }

    std::size_t m_capacity = 0;
    std::size_t m_filteredBytes = 0;
    std::unique_ptr<unsigned char[]> m_filtered;
    std::unique_ptr<unsigned char[]> m_deflated;
    std::unique_ptr<unsigned char[]> m_levelBuffer =
        std::make_unique_for_overwrite<unsigned char[]>(ISAL_DEF_LVL1_DEFAULT);
};

/// Tries both filters on a few rows. What shrinks little with Sub is a photograph, for which nothing else is tried; and
/// a few rows may mislead, so Sub must be beaten clearly.
Filter chooseFilter(Workbench &workbench, const QImage &picture, Rows rows, ColorType colorType)
{
    const auto rowBytes = filteredRowBytes(picture.width(), colorType);
    const int sampleRows = static_cast<int>(std::clamp<std::size_t>(sampleBytes / rowBytes, 1, rows.count));
    const Rows sample{rows.first + (rows.count - sampleRows) / 2, sampleRows};
    workbench.filter(picture, sample, Filter::sub, colorType);
    const std::size_t sub = workbench.deflate(Ending::moreFollows).value_or(0);
    if (sub > workbench.filteredBytes() / 4) {
        return Filter::sub;
    }
    workbench.filter(picture, sample, Filter::none, colorType);
    const std::size_t none = workbench.deflate(Ending::moreFollows).value_or(sub);
    return none < sub - sub / 10 ? Filter::none : Filter::sub;
}

} // namespace

std::vector<Rows> cutIntoBands(PixelSize size, ColorType colorType)
{
    const std::size_t rowBytes = filteredRowBytes(size.width, colorType);
    const int rowsPerBand = static_cast<int>(std::max<std::size_t>(1, bandBytes / rowBytes));
    std::vector<Rows> bands;
    for (int row = 0; row < size.height; row += std::min(rowsPerBand, size.height - row)) {
        bands.push_back({row, std::min(rowsPerBand, size.height - row)});
    }
    return bands;
}

std::optional<EncodedBand> encodeBand(const QImage &picture, Rows rows, ColorType colorType)
{
    Workbench &workbench = Workbench::ofThisThread();
    workbench.prepare(filteredRowBytes(picture.width(), colorType) * static_cast<std::size_t>(rows.count));
    const Filter filter = chooseFilter(workbench, picture, rows, colorType);
    workbench.filter(picture, rows, filter, colorType);
    const bool last = rows.first + rows.count == picture.height();
    const std::optional<std::size_t> deflated = workbench.deflate(last ? Ending::endOfStream : Ending::moreFollows);
    if (!deflated) {
        return std::nullopt;
    }
    const std::size_t before = rows.first == 0 ? zlibHeader.size() : 0;
    EncodedBand band;
    band.chunk.resize(chunkOverhead + before + *deflated);
    unsigned char *data = band.chunk.data() + chunkDataOffset;
    std::copy_n(zlibHeader.begin(), before, data);
    std::copy_n(workbench.deflated(), *deflated, data + before);
    sealChunk(band.chunk.data(), "IDAT", before + *deflated);
    band.adler = workbench.adler();
    band.filteredBytes = workbench.filteredBytes();
    return band;
}

} // namespace lumenfold::png
