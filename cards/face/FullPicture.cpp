#include "cards/face/FullPicture.h"

#include "platform/image/EncodingPool.h"

#include <utility>

namespace lumenfold {
namespace {

/// From here on somebody wants to see the pixels themselves.
constexpr int magnification = 4;

QImage pictureOf(const Image &image, QSize device)
{
    const QImage pixels = image.pixels();
    if (pixels.isNull() || pixels.size() == device) {
        return pixels;
    }
    const bool isMagnified = device.width() >= pixels.width() * magnification;
    return pixels.scaled(device, Qt::IgnoreAspectRatio,
                         isMagnified ? Qt::FastTransformation : Qt::SmoothTransformation);
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
        m_watcher.setFuture(
            makePicture(backgroundPool(), [image = m_image, device] { return pictureOf(image, device); }));
    }
}

} // namespace lumenfold
