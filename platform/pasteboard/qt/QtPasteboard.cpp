#include "platform/pasteboard/qt/QtPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include <memory>

namespace lumenfold {

QtPasteboard::QtPasteboard()
{
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            [this] { m_otherProgramCopied = !QGuiApplication::clipboard()->ownsClipboard(); });
}

QtPasteboard::~QtPasteboard()
{
    if (!m_awaited) {
        return;
    }
    if (const std::optional<QByteArray> png = m_awaited->pngData()) {
        offer(*png);
    }
}

void QtPasteboard::clearContents()
{
    ++m_set;
    m_awaited.reset();
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
    if (!m_cleared && (m_contents || m_awaited)) {
        // One picture is all that an offer of PNG can hold: the first stays.
        return;
    }
    if (!image.isEncoded()) {
        offerOnceEncoded(image);
    } else if (const std::optional<QByteArray> png = image.pngData()) {
        offer(*png);
    }
}

void QtPasteboard::setPngData(const QByteArray &png)
{
    if (m_cleared || !m_contents) {
        offer(png);
    } else {
        m_contents->setPng(png);
    }
}

void QtPasteboard::offer(const QByteArray &png)
{
    ++m_set;
    m_awaited.reset();
    m_cleared = false;
    auto contents = std::make_unique<PngMimeData>(png);
    m_contents = contents.get();
    QGuiApplication::clipboard()->setMimeData(contents.release());
}

void QtPasteboard::offerOnceEncoded(const Image &image)
{
    m_cleared = false;
    m_otherProgramCopied = false;
    m_awaited = image;
    image.whenEncoded(this, [this, set = ++m_set](const std::optional<QByteArray> &png) {
        if (set != m_set) {
            return;
        }
        m_awaited.reset();
        if (png) {
            offer(*png);
        } else if (!m_otherProgramCopied) {
            emptyClipboard();
        }
    });
}

void QtPasteboard::emptyClipboard()
{
    m_cleared = false;
    QGuiApplication::clipboard()->clear();
}

} // namespace lumenfold
