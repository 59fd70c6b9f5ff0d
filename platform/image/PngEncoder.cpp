#include "platform/image/PngEncoder.h"

#include "platform/image/EncodingPool.h"
#include "platform/image/PngBand.h"
#include "platform/image/PngFormat.h"

#include <QSemaphore>
#include <QThreadPool>

#include <algorithm>
#include <atomic>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace lumenfold {
namespace {

constexpr std::size_t zlibTrailerBytes = 4;

bool isEncodable(const QImage &picture)
{
    const bool readable = picture.format() == QImage::Format_RGB32 || picture.format() == QImage::Format_ARGB32;
    return readable && png::isBelievable({picture.width(), picture.height()});
}

/// An alpha channel that says "opaque" everywhere is not worth a third more bytes.
bool hasTransparentPixel(const QImage &picture)
{
    if (picture.format() != QImage::Format_ARGB32) {
        return false;
    }
    for (int y = 0; y < picture.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        QRgb common = 0xff000000;
        for (int x = 0; x < picture.width(); ++x) {
            common &= row[x];
        }
        if (common != 0xff000000) {
            return true;
        }
    }
    return false;
}

/// One picture on its way through the pool. Each band is a piece of work of its own, and whichever ends last joins
/// them, so no thread of the pool ever waits for another.
class EncodingJob : public std::enable_shared_from_this<EncodingJob> {
public:
    EncodingJob(QImage picture, PngEncoder::Done done) : m_picture(std::move(picture)), m_done(std::move(done)) {}

    void start()
    {
        encodingPool().start([job = shared_from_this()] { job->prepare(); });
    }

private:
    [[nodiscard]] PixelSize size() const { return {m_picture.width(), m_picture.height()}; }

    void prepare()
    {
        if (!isEncodable(m_picture)) {
            finish(std::nullopt);
            return;
        }
        m_colorType = hasTransparentPixel(m_picture) ? png::ColorType::rgba : png::ColorType::rgb;
        const std::vector<png::Rows> bands = png::cutIntoBands(size(), m_colorType);
        m_bands.resize(bands.size());
        m_bandsLeft = bands.size();
        for (std::size_t band = 0; band < bands.size(); ++band) {
            encodingPool().start([job = shared_from_this(), band, rows = bands[band]] { job->encode(band, rows); });
        }
    }

    void encode(std::size_t band, png::Rows rows)
    {
        try {
            m_bands[band] = png::encodeBand(m_picture, rows, m_colorType);
        } catch (const std::bad_alloc &) {
            m_bands[band].reset();
        }
        if (m_bandsLeft.fetch_sub(1) > 1) {
            return;
        }
        std::optional<QByteArray> file;
        try {
            file = join();
        } catch (const std::bad_alloc &) {
            file.reset();
        }
        finish(std::move(file));
    }

    [[nodiscard]] std::optional<QByteArray> join() const
    {
        std::size_t total = png::headerBytes + 2 * png::chunkOverhead + zlibTrailerBytes;
        std::uint32_t adler = 1;
        for (const std::optional<png::EncodedBand> &band : m_bands) {
            if (!band) {
                return std::nullopt;
            }
            total += band->chunk.size();
            adler = png::combineAdler32(adler, band->adler, band->filteredBytes);
        }
        QByteArray file(static_cast<qsizetype>(total), Qt::Uninitialized);
        auto *target = reinterpret_cast<unsigned char *>(file.data());
        png::writeHeader(target, size(), m_colorType);
        target += png::headerBytes;
        for (const std::optional<png::EncodedBand> &band : m_bands) {
            target = std::copy(band->chunk.begin(), band->chunk.end(), target);
        }
        png::writeBigEndian(target + png::chunkDataOffset, adler);
        png::sealChunk(target, "IDAT", zlibTrailerBytes);
        png::sealChunk(target + png::chunkOverhead + zlibTrailerBytes, "IEND", 0);
        return file;
    }

    void finish(std::optional<QByteArray> file)
    {
        m_bands = {};
        m_picture = QImage();
        std::exchange(m_done, {})(std::move(file));
    }

    QImage m_picture;
    PngEncoder::Done m_done;
    png::ColorType m_colorType = png::ColorType::rgb;
    std::vector<std::optional<png::EncodedBand>> m_bands;
    std::atomic<std::size_t> m_bandsLeft = 0;
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
