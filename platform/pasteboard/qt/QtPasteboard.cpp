#include "platform/pasteboard/qt/QtPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include <utility>

namespace lumenfold {

void QtPasteboard::clearContents()
{
    m_cleared = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_cleared) {
                emptyClipboard();
            }
        },
        Qt::QueuedConnection);
}

void QtPasteboard::writeImage(const Image &image)
{
    if (!m_cleared && m_contents) {
        // One picture is all that an offer of PNG can hold: the first stays.
        return;
    }
    const bool encoded = image.isEncoded();
    if (encoded && !image.pngData()) {
        return;
    }
    auto contents = std::make_unique<PngMimeData>(image);
    const QPointer<PngMimeData> written = contents.get();
    offer(std::move(contents));
    if (encoded) {
        return;
    }
    image.whenEncoded(this, [this, written](const std::optional<QByteArray> &png) {
        if (!png && written && written == m_contents && !written->hasPng()) {
            emptyClipboard();
        }
    });
}

void QtPasteboard::setPngData(const QByteArray &png)
{
    if (m_cleared || !m_contents) {
        offer(std::make_unique<PngMimeData>(std::nullopt));
    }
    m_contents->setPng(png);
}

void QtPasteboard::offer(std::unique_ptr<PngMimeData> contents)
{
    m_cleared = false;
    m_contents = contents.get();
    QGuiApplication::clipboard()->setMimeData(contents.release());
}

void QtPasteboard::emptyClipboard()
{
    m_cleared = false;
    QGuiApplication::clipboard()->clear();
}

} // namespace lumenfold
