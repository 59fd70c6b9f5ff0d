#include "platform/image/Image.h"

#include "platform/image/EncodingListener.h"
#include "platform/image/LargeBlocks.h"
#include "platform/image/PngDecoder.h"
#include "platform/image/PngEncoder.h"
#include "platform/image/PngFile.h"
#include "platform/image/PngFormat.h"
#include "platform/image/ThumbnailScaling.h"

#include <QMutex>
#include <QMutexLocker>
#include <QWaitCondition>

#include <numeric>
#include <utility>
#include <vector>

namespace lumenfold {
namespace {

using PngBytes = std::optional<QByteArray>;

/// What the thumbnails that one picture keeps beside the latest may take: enough for those of ordinary cards, not for
/// every size that a large pinned card had while it was resized.
constexpr qsizetype earlierThumbnailBytes = 4 * 1024 * 1024;
constexpr std::size_t maximumThumbnails = 4;

struct Thumbnail {
    PixelSize bounds;
    QImage picture;
    ThumbnailFit fit = ThumbnailFit::exact;
};

QImage preparedForEncoding(QImage pixels)
{
    const QImage::Format format = pixels.format();
    if (format != QImage::Format_RGB32 && format != QImage::Format_ARGB32) {
        pixels.convertTo(pixels.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    }
    if (pixels.devicePixelRatio() != 1) {
        pixels.setDevicePixelRatio(1);
    }
    return pixels;
}

} // namespace

/// What the handles of one picture share. Everything that changes is behind the mutex.
struct Image::Shared {
    enum class Encoding { none, running, ended };

    explicit Shared(Size points) : size(points) { returnLargeBlocksWhenFreed(); }
    explicit Shared(PixelSize representation)
        : Shared(Size{static_cast<double>(representation.width), static_cast<double>(representation.height)})
    {
        pixelSize = representation;
    }

    const Size size;
    std::optional<PixelSize> pixelSize;

    QMutex mutex;
    /// The pixels are decoded by one thread at a time, outside `mutex`, which others need only for a moment.
    QMutex decoding;
    QWaitCondition encodingEnded;
    Encoding encoding = Encoding::none;
    QImage pixels;
    /// The unused bytes of `pixels` are not what the toolkit takes them for.
    bool hasStrayBytes = false;
    PngBytes png;
    /// Where the bytes are when `png` does not have them. Read behind a mutex of its own, because a disk may take its
    /// time; set once, behind both, this one first.
    std::unique_ptr<PngFile> file;
    QMutex reading;
    bool releasesPixels = false;
    std::vector<EncodingListener> listeners;
    std::vector<Thumbnail> thumbnails;
    std::shared_ptr<ThumbnailKeeper> keeper;

    void finishEncoding(PngBytes result)
    {
        const QMutexLocker lock(&mutex);
        png = std::move(result);
        encoding = Encoding::ended;
        releasePixelsIfUnneeded();
        for (const EncodingListener &listener : std::exchange(listeners, {})) {
            listener.tell(png);
        }
        encodingEnded.wakeAll();
    }

    /// With `mutex` held. Pixels that could not be encoded are all there is of the picture and stay.
    void releasePixelsIfUnneeded()
    {
        if (releasesPixels && (png || file)) {
            pixels = QImage();
        }
    }

    [[nodiscard]] QImage pixelsAtHand()
    {
        const QMutexLocker lock(&mutex);
        return pixels;
    }

    /// Pixels as the toolkit wants them; null ones change nothing.
    void keepPixels(const QImage &made)
    {
        const QMutexLocker lock(&mutex);
        if (made.isNull()) {
            return;
        }
        if (!releasesPixels || !pixels.isNull()) {
            pixels = made;
            hasStrayBytes = false;
        }
    }

    /// With `mutex` held. The earliest ones make room.
    void keepThumbnail(Thumbnail latest)
    {
        thumbnails.push_back(std::move(latest));
        const auto earlierBytes = [this] {
            return std::accumulate(thumbnails.begin(), thumbnails.end() - 1, qsizetype{0},
                                   [](qsizetype sum, const Thumbnail &one) { return sum + one.picture.sizeInBytes(); });
        };
        while (thumbnails.size() > maximumThumbnails || earlierBytes() > earlierThumbnailBytes) {
            thumbnails.erase(thumbnails.begin());
        }
    }

    void waitForEncoding()
    {
        const QMutexLocker lock(&mutex);
        while (encoding == Encoding::running) {
            encodingEnded.wait(&mutex);
        }
    }

    [[nodiscard]] PngBytes bytesInMemory()
    {
        const QMutexLocker lock(&mutex);
        return png;
    }

    /// What there is now; does not wait for an encoding.
    [[nodiscard]] PngBytes bytes()
    {
        if (PngBytes inMemory = bytesInMemory()) {
            return inMemory;
        }
        const QMutexLocker lock(&reading);
        if (!file) {
            return std::nullopt;
        }
        // Another program may have changed it.
        QByteArray read = file->readAll();
        return png::readHeader(read) == pixelSize ? PngBytes(std::move(read)) : std::nullopt;
    }
};

Image::Image(std::shared_ptr<Shared> shared) : m_shared(std::move(shared)) {}

Image Image::fromPixels(QImage pixels)
{
    return fromPixels(std::move(pixels), UnusedBytes::set);
}

Image Image::fromScreenPixels(QImage pixels)
{
    return fromPixels(std::move(pixels), UnusedBytes::stray);
}

Image Image::fromPixels(QImage pixels, UnusedBytes unusedBytes)
{
    if (pixels.isNull()) {
        return {};
    }
    auto shared = std::make_shared<Shared>(PixelSize{pixels.width(), pixels.height()});
    shared->pixels = preparedForEncoding(std::move(pixels));
    shared->hasStrayBytes = unusedBytes == UnusedBytes::stray && shared->pixels.format() == QImage::Format_RGB32;
    shared->encoding = Shared::Encoding::running;
    PngEncoder::encode(shared->pixels, [shared](PngBytes png) { shared->finishEncoding(std::move(png)); });
    return Image(std::move(shared));
}

Image Image::fromPng(QByteArray png)
{
    const std::optional<PixelSize> pixelSize = png::readHeader(png);
    if (!pixelSize) {
        return {};
    }
    auto shared = std::make_shared<Shared>(*pixelSize);
    shared->png = std::move(png);
    shared->encoding = Shared::Encoding::ended;
    return Image(std::move(shared));
}

Image Image::fromPngFile(const QString &path)
{
    std::unique_ptr<PngFile> file = PngFile::open(path);
    if (!file) {
        return {};
    }
    Image image = fromPng(file->readFirst(static_cast<qint64>(png::headerBytes)));
    if (image.isNull() || file->size() > png::maximumFileBytes(*image.pixelSize()) || !file->isWhole()) {
        return {};
    }
    image.m_shared->png.reset();
    image.m_shared->file = std::move(file);
    return image;
}

Image Image::withoutRepresentation(Size size)
{
    return Image(std::make_shared<Shared>(size));
}

bool Image::isNull() const
{
    return !m_shared;
}

std::optional<PixelSize> Image::pixelSize() const
{
    return m_shared ? m_shared->pixelSize : std::nullopt;
}

Size Image::size() const
{
    return m_shared ? m_shared->size : Size{};
}

QImage Image::pixels() const
{
    if (!m_shared) {
        return {};
    }
    const QMutexLocker decoding(&m_shared->decoding);
    QImage pixels = m_shared->pixelsAtHand();
    if (!pixels.isNull()) {
        const QMutexLocker lock(&m_shared->mutex);
        if (!m_shared->hasStrayBytes) {
            return pixels;
        }
    }
    if (!pixels.isNull()) {
        // They may be being encoded, so they stay as they are.
        pixels = opaqueCopy(pixels);
    } else {
        const PngBytes png = m_shared->bytes();
        pixels = png ? PngDecoder::decode(*png) : QImage();
    }
    m_shared->keepPixels(pixels);
    return pixels;
}

bool Image::holdsPixels() const
{
    if (!m_shared) {
        return false;
    }
    const QMutexLocker lock(&m_shared->mutex);
    return !m_shared->pixels.isNull();
}

PngBytes Image::pngData() const
{
    if (!m_shared) {
        return std::nullopt;
    }
    m_shared->waitForEncoding();
    return m_shared->bytes();
}

std::optional<FileWriter> Image::pngWriter() const
{
    if (!m_shared) {
        return std::nullopt;
    }
    m_shared->waitForEncoding();
    if (const PngBytes inMemory = m_shared->bytesInMemory()) {
        return [png = *inMemory](QFile &file) { return writeBytes(file, png); };
    }
    const QMutexLocker reading(&m_shared->reading);
    if (!m_shared->file ||
        png::readHeader(m_shared->file->readFirst(static_cast<qint64>(png::headerBytes))) != m_shared->pixelSize) {
        return std::nullopt;
    }
    return [shared = m_shared](QFile &file) {
        const QMutexLocker lock(&shared->reading);
        return shared->file->copyTo(file);
    };
}

bool Image::isEncoded() const
{
    if (!m_shared) {
        return true;
    }
    const QMutexLocker lock(&m_shared->mutex);
    return m_shared->encoding != Shared::Encoding::running;
}

void Image::whenEncoded(QObject *context, std::function<void(std::optional<QByteArray>)> done) const
{
    const EncodingListener listener(context, std::move(done));
    if (m_shared) {
        const QMutexLocker lock(&m_shared->mutex);
        if (m_shared->encoding == Shared::Encoding::running) {
            m_shared->listeners.push_back(listener);
            return;
        }
    }
    listener.tell(m_shared ? m_shared->bytes() : std::nullopt);
}

QImage Image::thumbnail(PixelSize bounds, ThumbnailFit fit) const
{
    if (!m_shared) {
        return {};
    }
    std::shared_ptr<ThumbnailKeeper> keeper;
    {
        const QMutexLocker lock(&m_shared->mutex);
        for (const Thumbnail &kept : m_shared->thumbnails) {
            if (kept.bounds == bounds) {
                return kept.picture;
            }
        }
        keeper = m_shared->keeper;
    }
    const bool isFromBytes = !holdsPixels();
    if (keeper && isFromBytes && pixelSize()) {
        const QImage found = keeper->find(*this);
        if (isThumbnail(found, *pixelSize(), bounds, fit)) {
            const QMutexLocker lock(&m_shared->mutex);
            m_shared->keepThumbnail({bounds, found, fit});
            return found;
        }
    }
    QImage made;
    if (isFromBytes) {
        const PngBytes png = pngData();
        made = png ? scaledInto(*png, bounds) : QImage();
    }
    if (made.isNull()) {
        const QImage atHand = m_shared->pixelsAtHand();
        made = scaledInto(atHand.isNull() ? pixels() : atHand, bounds);
    }
    {
        const QMutexLocker lock(&m_shared->mutex);
        m_shared->keepThumbnail({bounds, made, fit});
        keeper = m_shared->keeper;
    }
    if (keeper && !made.isNull()) {
        keeper->thumbnailMade(*this);
    }
    return made;
}

QImage Image::readyThumbnail() const
{
    if (!m_shared) {
        return {};
    }
    const QMutexLocker lock(&m_shared->mutex);
    QImage largest;
    for (const Thumbnail &kept : m_shared->thumbnails) {
        if (kept.picture.width() > largest.width()) {
            largest = kept.picture;
        }
    }
    return largest;
}

Image::LatestThumbnail Image::latestThumbnail() const
{
    if (!m_shared) {
        return {};
    }
    const QMutexLocker lock(&m_shared->mutex);
    const std::vector<Thumbnail> &all = m_shared->thumbnails;
    const auto exact =
        std::find_if(all.rbegin(), all.rend(), [](const Thumbnail &one) { return one.fit == ThumbnailFit::exact; });
    const auto latest = exact == all.rend() ? all.rbegin() : exact;
    return latest == all.rend() ? LatestThumbnail() : LatestThumbnail{latest->picture, latest->fit};
}

void Image::keepThumbnailsWith(std::shared_ptr<ThumbnailKeeper> keeper) const
{
    if (m_shared) {
        const QMutexLocker lock(&m_shared->mutex);
        m_shared->keeper = std::move(keeper);
    }
}

std::optional<QByteArray> Image::fileFingerprint() const
{
    if (!m_shared) {
        return std::nullopt;
    }
    const QMutexLocker lock(&m_shared->reading);
    return m_shared->file ? m_shared->file->fingerprint() : std::nullopt;
}

void Image::leaveBytesToFile(const QString &path) const
{
    const PngBytes bytes = pngData();
    std::unique_ptr<PngFile> file = bytes ? PngFile::open(path) : nullptr;
    if (!file || file->size() != bytes->size()) {
        return;
    }
    const QMutexLocker reading(&m_shared->reading);
    const QMutexLocker lock(&m_shared->mutex);
    if (!m_shared->file) {
        m_shared->file = std::move(file);
        m_shared->png.reset();
    }
}

void Image::keepBytesOfFile() const
{
    if (!m_shared) {
        return;
    }
    const QMutexLocker lock(&m_shared->reading);
    if (m_shared->file) {
        m_shared->file->hold();
    }
}

void Image::releasePixelsWhenEncoded() const
{
    if (!m_shared) {
        return;
    }
    const QMutexLocker lock(&m_shared->mutex);
    m_shared->releasesPixels = true;
    m_shared->releasePixelsIfUnneeded();
}

} // namespace lumenfold
