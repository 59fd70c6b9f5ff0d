#include "platform/image/Image.h"

#include "platform/image/PngDecoder.h"
#include "platform/image/PngEncoder.h"
#include "platform/image/PngFormat.h"

#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QMutexLocker>
#include <QPointer>
#include <QWaitCondition>

#include <algorithm>
#include <utility>
#include <vector>

namespace lumenfold {
namespace {

using PngBytes = std::optional<QByteArray>;
using EncodedCallback = std::function<void(PngBytes)>;

/// Sizes of thumbnail that one picture keeps. A card shows one and keeps another while it is resized.
constexpr std::size_t thumbnailsKept = 4;

/// Carries the news of an encoding to the thread of whoever asked. It lives on that thread and belongs to nobody else,
/// so that the encoding thread never has to look at an object that may be going away.
class EncodingListener {
public:
    EncodingListener(QObject *context, EncodedCallback done)
        : m_relay(new QObject, [](QObject *relay) { relay->deleteLater(); })
        , m_context(context)
        , m_done(std::move(done))
    {
        m_relay->moveToThread(context->thread());
    }

    /// Any thread.
    void tell(const PngBytes &png) const
    {
        QMetaObject::invokeMethod(
            m_relay.get(),
            [relay = m_relay, context = m_context, done = m_done, png] {
                if (context) {
                    done(png);
                }
            },
            Qt::QueuedConnection);
    }

private:
    std::shared_ptr<QObject> m_relay;
    QPointer<QObject> m_context;
    EncodedCallback m_done;
};

struct Thumbnail {
    PixelSize bounds;
    QImage picture;
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

QImage scaledInto(const QImage &pixels, PixelSize bounds)
{
    if (pixels.isNull() || bounds.isEmpty()) {
        return {};
    }
    if (pixels.width() <= bounds.width && pixels.height() <= bounds.height) {
        return pixels.copy();
    }
    const QSize fitting = pixels.size().scaled(bounds.width, bounds.height, Qt::KeepAspectRatio);
    return pixels.scaled(fitting.expandedTo({1, 1}), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

/// What the handles of one picture share. Everything that changes is behind the mutex.
struct Image::Shared {
    enum class Encoding { none, running, ended };

    Size size;
    std::optional<PixelSize> pixelSize;

    QMutex mutex;
    /// The pixels are decoded by one thread at a time, outside `mutex`, which others need only for a moment.
    QMutex decoding;
    QWaitCondition encodingEnded;
    Encoding encoding = Encoding::none;
    QImage pixels;
    PngBytes png;
    /// Open for as long as the picture lives, so that the bytes stay readable when the file is deleted.
    std::unique_ptr<QFile> file;
    bool releasesPixels = false;
    std::vector<EncodingListener> listeners;
    std::vector<Thumbnail> thumbnails;

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

    /// With `mutex` held.
    [[nodiscard]] PngBytes bytes() const
    {
        if (!file) {
            return png;
        }
        file->seek(0);
        QByteArray read = file->readAll();
        return png::readHeader(read) == pixelSize ? PngBytes(std::move(read)) : std::nullopt;
    }
};

Image::Image(std::shared_ptr<Shared> shared) : m_shared(std::move(shared)) {}

Image Image::fromPixels(QImage pixels)
{
    if (pixels.isNull()) {
        return {};
    }
    auto shared = std::make_shared<Shared>();
    shared->pixels = preparedForEncoding(std::move(pixels));
    shared->pixelSize = {shared->pixels.width(), shared->pixels.height()};
    shared->size = {static_cast<double>(shared->pixels.width()), static_cast<double>(shared->pixels.height())};
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
    auto shared = std::make_shared<Shared>();
    shared->pixelSize = pixelSize;
    shared->size = {static_cast<double>(pixelSize->width), static_cast<double>(pixelSize->height)};
    shared->png = std::move(png);
    shared->encoding = Shared::Encoding::ended;
    return Image(std::move(shared));
}

Image Image::fromPngFile(const QString &path)
{
    auto file = std::make_unique<QFile>(path);
    // A pipe would keep whoever opens it waiting.
    if (!QFileInfo(path).isFile() || !file->open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return {};
    }
    Image image = fromPng(file->read(static_cast<qint64>(png::headerBytes)));
    if (!image.isNull()) {
        image.m_shared->png.reset();
        image.m_shared->file = std::move(file);
    }
    return image;
}

Image Image::withoutRepresentation(Size size)
{
    auto shared = std::make_shared<Shared>();
    shared->size = size;
    return Image(std::move(shared));
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
    PngBytes png;
    {
        const QMutexLocker lock(&m_shared->mutex);
        if (!m_shared->pixels.isNull()) {
            return m_shared->pixels;
        }
        png = m_shared->bytes();
    }
    QImage pixels = png ? PngDecoder::decode(*png) : QImage();
    const QMutexLocker lock(&m_shared->mutex);
    if (!m_shared->releasesPixels) {
        m_shared->pixels = pixels;
    }
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
    const QMutexLocker lock(&m_shared->mutex);
    while (m_shared->encoding == Shared::Encoding::running) {
        m_shared->encodingEnded.wait(&m_shared->mutex);
    }
    return m_shared->bytes();
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
    EncodingListener listener(context, std::move(done));
    if (!m_shared) {
        listener.tell(std::nullopt);
        return;
    }
    const QMutexLocker lock(&m_shared->mutex);
    if (m_shared->encoding == Shared::Encoding::running) {
        m_shared->listeners.push_back(std::move(listener));
    } else {
        listener.tell(m_shared->bytes());
    }
}

QImage Image::thumbnail(PixelSize bounds) const
{
    if (!m_shared) {
        return {};
    }
    {
        const QMutexLocker lock(&m_shared->mutex);
        for (const Thumbnail &kept : m_shared->thumbnails) {
            if (kept.bounds == bounds) {
                return kept.picture;
            }
        }
    }
    Thumbnail made{bounds, scaledInto(pixels(), bounds)};
    const QMutexLocker lock(&m_shared->mutex);
    std::vector<Thumbnail> &kept = m_shared->thumbnails;
    if (kept.size() == thumbnailsKept) {
        kept.erase(kept.begin());
    }
    kept.push_back(made);
    return made.picture;
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
