#include "cards/face/FullPicture.h"

#include "platform/image/EncodingPool.h"

#include <QPromise>
#include <QThreadPool>

#include <memory>
#include <utility>

namespace lumenfold {
namespace {

/// From here on somebody wants to see the pixels themselves.
constexpr int magnification = 4;

QFuture<QImage> pictureOnPool(const Image &image, QSize device)
{
    auto promise = std::make_shared<QPromise<QImage>>();
    QFuture<QImage> future = promise->future();
    promise->start();
    backgroundPool().start([promise = std::move(promise), image, device] {
        QImage pixels = image.pixels();
        if (!pixels.isNull() && pixels.size() != device) {
            const bool isMagnified = device.width() >= pixels.width() * magnification;
            pixels = pixels.scaled(device, Qt::IgnoreAspectRatio,
                                   isMagnified ? Qt::FastTransformation : Qt::SmoothTransformation);
        }
        promise->addResult(pixels);
        promise->finish();
    });
    return future;
}

} // namespace

FullPicture::FullPicture(Image image) : m_image(std::move(image)), m_picture(m_image.readyThumbnail())
{
    connect(&m_watcher, &QFutureWatcherBase::finished, this, [this] {
        m_picture = m_watcher.result();
        m_isComplete = true;
        Q_EMIT changed();
    });
}

FullPicture::~FullPicture() = default;

void FullPicture::prepare(QSize device)
{
    if (device != m_preparedFor) {
        m_preparedFor = device;
        m_watcher.setFuture(pictureOnPool(m_image, device));
    }
}

} // namespace lumenfold
