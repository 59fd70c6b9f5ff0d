#include "cards/CardPicture.h"

#include "platform/image/EncodingPool.h"
#include "platform/image/ThumbnailScaling.h"

#include <QBrush>
#include <QGuiApplication>
#include <QPaintDevice>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QTransform>

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumenfold {
PixelSize fillingSize(PixelSize pixels, PixelSize device)
{
    if (pixels.isEmpty() || device.isEmpty()) {
        return {};
    }
    const double scale =
        std::max(static_cast<double>(device.width) / pixels.width, static_cast<double>(device.height) / pixels.height);
    return {std::max(static_cast<int>(std::lround(pixels.width * scale)), device.width),
            std::max(static_cast<int>(std::lround(pixels.height * scale)), device.height)};
}

QRectF visiblePart(QSizeF pixels, QSizeF area)
{
    const QSizeF part = area.scaled(pixels, Qt::KeepAspectRatio);
    return {QPointF((pixels.width() - part.width()) / 2, (pixels.height() - part.height()) / 2), part};
}

CardPicture::CardPicture(Image image) : m_image(std::move(image)), m_standIn(m_image.readyThumbnail())
{
    connect(&m_watcher, &QFutureWatcherBase::finished, this, [this] {
        takeCopy(m_watcher.result());
        if (m_copy.isNull()) {
            Q_EMIT unreadable();
        } else {
            Q_EMIT changed();
        }
    });
}

CardPicture::~CardPicture() = default;

void CardPicture::prepare(PixelSize device, Sharpness sharpness)
{
    const PixelSize wanted = fillingSize(m_image.pixelSize().value_or(PixelSize{}), device);
    if (wanted.isEmpty() || wanted == m_madeFor || m_watcher.isRunning()) {
        return;
    }
    const bool isLargeEnough = m_madeFor.width >= wanted.width && m_madeFor.height >= wanted.height;
    if (sharpness == Sharpness::passing && isLargeEnough && m_madeFor.width <= wanted.width * largestThumbnailExcess) {
        return;
    }
    m_making = wanted;
    const ThumbnailFit fit = sharpness == Sharpness::exact ? ThumbnailFit::exact : ThumbnailFit::atLeast;
    if (m_image.holdsPixels()) {
        // A new capture: a few milliseconds, and the card is never seen without its picture.
        takeCopy(m_image.thumbnail(wanted, fit));
    } else {
        m_watcher.setFuture(
            makePicture(backgroundPool(), [image = m_image, wanted, fit] { return image.thumbnail(wanted, fit); }));
    }
}

void CardPicture::takeCopy(const QImage &copy)
{
    m_madeFor = m_making;
    // What there was is better than nothing.
    if (!copy.isNull()) {
        m_copy = copy;
        m_standIn = {};
        if (copy.width() > m_making.width) {
            m_madeFor = {copy.width(), copy.height()};
        }
    }
    m_image.releasePixelsWhenEncoded();
}

void CardPicture::paint(QPainter &painter, const QRectF &area, double cornerRadius, Sharpness sharpness)
{
    const double scale = painter.device()->devicePixelRatioF();
    prepare({static_cast<int>(std::lround(area.width() * scale)), static_cast<int>(std::lround(area.height() * scale))},
            sharpness);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QImage &copy = m_copy.isNull() ? m_standIn : m_copy;
    const QRectF part = copy.isNull() ? QRectF() : visiblePart(copy.size(), area.size());
    // Pixel for pixel, there is nothing to smooth and everything to lose by it.
    const bool isExact = !copy.isNull() && std::abs(area.width() / part.width() * scale - 1) < 1e-3;
    if (copy.isNull()) {
        painter.setBrush(QGuiApplication::palette().color(QPalette::Mid));
        painter.drawRoundedRect(area, cornerRadius, cornerRadius);
    } else if (isExact) {
        const QPointF corner = (area.topLeft() * scale - part.topLeft());
        QBrush brush(copy);
        brush.setTransform(QTransform::fromTranslate(std::round(corner.x()) / scale, std::round(corner.y()) / scale)
                               .scale(1 / scale, 1 / scale));
        painter.setBrush(brush);
        painter.drawRoundedRect(area, cornerRadius, cornerRadius);
    } else {
        // Not with a brush, which repeats the picture: smoothed, its edges would take on the colours of the opposite
        // ones.
        QPainterPath outline;
        outline.addRoundedRect(area, cornerRadius, cornerRadius);
        painter.setClipPath(outline, Qt::IntersectClip);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(area, copy, part);
    }
    painter.restore();
}

} // namespace lumenfold
