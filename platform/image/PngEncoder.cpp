#include "platform/image/PngEncoder.h"

#include "platform/image/EncodingPool.h"
#include "platform/image/PngFilter.h"
#include "platform/image/PngFormat.h"

#include <QSemaphore>
#include <QThreadPool>

#include <isa-l/igzip_lib.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace lumenfold {
namespace {

/// How many filtered bytes one band has, about: few enough to stay in a core's own cache between filtering and
/// deflating, enough for the loss at a band's edges (back-references do not reach across) not to show.
constexpr std::size_t bandBytes = 512 * 1024;

/// What deflate says about itself before the first band: a 32 KiB window, fastest level, no dictionary.
constexpr std::array<unsigned char, 2> zlibHeader{0x78, 0x01};
constexpr std::size_t zlibTrailerBytes = 4;

/// One IDAT chunk: `rows` rows, filtered, deflated and sealed.
struct Band {
    int firstRow = 0;
    int rows = 0;
    std::unique_ptr<unsigned char[]> chunk;
    std::size_t chunkBytes = 0;
    std::uint32_t adler = 1;
    std::uint64_t filteredBytes = 0;
};

class EncodingJob : public std::enable_shared_from_this<EncodingJob> {
public:
    EncodingJob(QImage image, PngEncoder::Done done) : m_image(std::move(image)), m_done(std::move(done)) {}

    void start()
    {
        encodingPool().start([job = shared_from_this()] { job->cutIntoBands(); });
    }

private:
    [[nodiscard]] PixelSize size() const { return {m_image.width(), m_image.height()}; }

    [[nodiscard]] bool isReadable() const
    {
        return m_image.format() == QImage::Format_RGB32 || m_image.format() == QImage::Format_ARGB32;
    }

    /// An alpha channel that says "opaque" everywhere is not worth a third more bytes.
    [[nodiscard]] bool hasTransparentPixel() const
    {
        if (m_image.format() != QImage::Format_ARGB32) {
            return false;
        }
        for (int y = 0; y < m_image.height(); ++y) {
            const auto *row = reinterpret_cast<const QRgb *>(m_image.constScanLine(y));
            QRgb all = 0xff000000;
            for (int x = 0; x < m_image.width(); ++x) {
                all &= row[x];
            }
            if (all != 0xff000000) {
                return true;
            }
        }
        return false;
    }

    void cutIntoBands()
    {
        if (!isReadable() || !png::isBelievable(size())) {
            m_failed = true;
            finish();
            return;
        }
        m_colorType = hasTransparentPixel() ? png::ColorType::rgba : png::ColorType::rgb;
        const std::size_t rowBytes = png::filteredRowBytes(m_image.width(), m_colorType);
        const int rowsPerBand = static_cast<int>(std::max<std::size_t>(1, bandBytes / rowBytes));
        for (int row = 0; row < m_image.height(); row += rowsPerBand) {
            Band band;
            band.firstRow = row;
            band.rows = std::min(rowsPerBand, m_image.height() - row);
            m_bands.push_back(std::move(band));
        }
        m_bandsLeft = m_bands.size();
        for (Band &band : m_bands) {
            encodingPool().start([job = shared_from_this(), &band] { job->encodeBand(band); });
        }
    }

    void encodeBand(Band &band)
    {
        try {
            if (!m_failed && !deflateBand(band)) {
                m_failed = true;
            }
        } catch (const std::bad_alloc &) {
            m_failed = true;
        }
        if (m_bandsLeft.fetch_sub(1) == 1) {
            finish();
        }
    }

    [[nodiscard]] bool deflateBand(Band &band) const
    {
        const std::size_t rowBytes = png::filteredRowBytes(m_image.width(), m_colorType);
        const std::size_t filteredBytes = rowBytes * static_cast<std::size_t>(band.rows);
        const auto filtered = std::make_unique_for_overwrite<unsigned char[]>(filteredBytes);
        for (int row = 0; row < band.rows; ++row) {
            png::filterRow(m_image.constScanLine(band.firstRow + row), m_image.width(), m_colorType,
                           filtered.get() + rowBytes * static_cast<std::size_t>(row));
        }
        band.filteredBytes = filteredBytes;
        band.adler = isal_adler32(1, filtered.get(), filteredBytes);

        const bool first = &band == &m_bands.front();
        const bool last = &band == &m_bands.back();
        const std::size_t before = first ? zlibHeader.size() : 0;
        // Stored blocks of 65,535 bytes with 5 bytes each are the worst that can come out.
        const std::size_t worst = filteredBytes + 5 * (filteredBytes / 65535 + 2) + 64;
        band.chunk = std::make_unique_for_overwrite<unsigned char[]>(png::chunkOverhead + before + worst);
        unsigned char *data = band.chunk.get() + 8;
        std::copy_n(zlibHeader.begin(), before, data);

        const auto levelBuffer = std::make_unique_for_overwrite<unsigned char[]>(ISAL_DEF_LVL1_DEFAULT);
        isal_zstream stream;
        isal_deflate_stateless_init(&stream);
        stream.level = 1;
        stream.level_buf = levelBuffer.get();
        stream.level_buf_size = ISAL_DEF_LVL1_DEFAULT;
        stream.flush = last ? NO_FLUSH : FULL_FLUSH;
        stream.end_of_stream = last ? 1 : 0;
        stream.next_in = filtered.get();
        stream.avail_in = static_cast<std::uint32_t>(filteredBytes);
        stream.next_out = data + before;
        stream.avail_out = static_cast<std::uint32_t>(worst);
        if (isal_deflate_stateless(&stream) != COMP_OK) {
            return false;
        }
        const std::size_t dataBytes = before + stream.total_out;
        png::sealChunk(band.chunk.get(), "IDAT", dataBytes);
        band.chunkBytes = dataBytes + png::chunkOverhead;
        return true;
    }

    [[nodiscard]] std::optional<QByteArray> join() const
    {
        constexpr std::size_t endBytes = png::chunkOverhead + zlibTrailerBytes + png::chunkOverhead;
        std::size_t total = png::headerBytes + endBytes;
        std::uint32_t adler = 1;
        for (const Band &band : m_bands) {
            total += band.chunkBytes;
            adler = png::combineAdler32(adler, band.adler, band.filteredBytes);
        }
        QByteArray file(static_cast<qsizetype>(total), Qt::Uninitialized);
        auto *target = reinterpret_cast<unsigned char *>(file.data());
        png::writeHeader(target, size(), m_colorType);
        target += png::headerBytes;
        for (const Band &band : m_bands) {
            std::memcpy(target, band.chunk.get(), band.chunkBytes);
            target += band.chunkBytes;
        }
        png::writeBigEndian(target + 8, adler);
        png::sealChunk(target, "IDAT", zlibTrailerBytes);
        png::sealChunk(target + png::chunkOverhead + zlibTrailerBytes, "IEND", 0);
        return file;
    }

    void finish()
    {
        std::optional<QByteArray> file;
        try {
            if (!m_failed) {
                file = join();
            }
        } catch (const std::bad_alloc &) {
            m_failed = true;
        }
        m_bands.clear();
        m_image = QImage();
        std::exchange(m_done, {})(std::move(file));
    }

    QImage m_image;
    PngEncoder::Done m_done;
    png::ColorType m_colorType = png::ColorType::rgb;
    std::vector<Band> m_bands;
    std::atomic<std::size_t> m_bandsLeft = 0;
    std::atomic<bool> m_failed = false;
};

} // namespace

void PngEncoder::encode(QImage image, Done done)
{
    std::make_shared<EncodingJob>(std::move(image), std::move(done))->start();
}

std::optional<QByteArray> PngEncoder::encodeAndWait(QImage image)
{
    std::optional<QByteArray> result;
    QSemaphore finished;
    encode(std::move(image), [&](std::optional<QByteArray> png) {
        result = std::move(png);
        finished.release();
    });
    finished.acquire();
    return result;
}

} // namespace lumenfold
