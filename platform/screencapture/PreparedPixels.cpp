#include "platform/screencapture/PreparedPixels.h"

#include "platform/image/EncodingPool.h"

#include <QCoroFuture>
#include <QFuture>
#include <QMutex>
#include <QPromise>
#include <QThreadPool>

#include <algorithm>
#include <chrono>
#include <utility>

#include <xcb/shm.h>

namespace lumenfold {
namespace {

using x11::X11Connection;

/// Far longer than from the announcement of a capture to the capture.
constexpr std::chrono::seconds patience{1};
/// Some three milliseconds of the server's time, which others can get between two of them.
constexpr qsizetype bytesPerBand = 4 * 1024 * 1024;

} // namespace

struct PreparedPixels::Shelf {
    QPromise<void> touched;
    /// From the thread to the main thread.
    QMutex mutex;
    std::unique_ptr<SharedPixels> pixels;
    /// What follows belongs to the main thread.
    std::unique_ptr<AttachedPixels> attached;
    bool isTaken = false;
};

PreparedPixels::PreparedPixels(X11Connection &connection) : m_connection(connection)
{
    m_end.setSingleShot(true);
    m_end.setInterval(patience);
    QObject::connect(&m_end, &QTimer::timeout, &m_end, [this] { giveBack(); });
}

PreparedPixels::~PreparedPixels()
{
    giveBack();
}

void PreparedPixels::prepare(std::uint32_t drawable, QRect part, qsizetype bytesPerLine)
{
    giveBack();
    m_shelf = std::make_shared<Shelf>();
    m_shelf->touched.start();
    m_end.start();
    const auto bytes = static_cast<std::size_t>(bytesPerLine * part.height());
    backgroundPool().start([shelf = m_shelf, bytes] {
        auto pixels = SharedPixels::create(bytes);
        if (pixels) {
            pixels->touch();
            const QMutexLocker lock(&shelf->mutex);
            shelf->pixels = std::move(pixels);
        }
        shelf->touched.finish();
    });
    attachAndWrite(m_shelf, &m_connection, drawable, part, bytesPerLine);
}

QCoro::Task<> PreparedPixels::attachAndWrite(std::shared_ptr<Shelf> shelf, QPointer<X11Connection> connection,
                                             std::uint32_t drawable, QRect part, qsizetype bytesPerLine)
{
    const QFuture<void> touched = shelf->touched.future();
    co_await touched;
    if (!connection || shelf->isTaken || !shelf->pixels) {
        co_return;
    }
    shelf->attached = std::make_unique<AttachedPixels>(*connection, std::move(shelf->pixels));
    const int lines = static_cast<int>(std::max<qsizetype>(1, bytesPerBand / bytesPerLine));
    for (int top = 0; top < part.height(); top += lines) {
        const QRect band(part.x(), part.y() + top, part.width(), std::min(lines, part.height() - top));
        const unsigned written = shelf->attached->write(drawable, band, top * bytesPerLine);
        const auto answer = co_await connection->replyLater<xcb_shm_get_image_reply_t>(written);
        if (!connection || !answer || shelf->isTaken) {
            co_return;
        }
    }
}

void PreparedPixels::giveBack()
{
    m_end.stop();
    if (const auto shelf = std::exchange(m_shelf, nullptr)) {
        shelf->isTaken = true;
        shelf->attached.reset();
    }
}

std::unique_ptr<AttachedPixels> PreparedPixels::take(std::size_t bytes)
{
    m_end.stop();
    std::unique_ptr<SharedPixels> pixels;
    if (const auto shelf = std::exchange(m_shelf, nullptr)) {
        shelf->isTaken = true;
        if (shelf->attached && shelf->attached->bytes() == bytes) {
            return std::move(shelf->attached);
        }
        shelf->attached.reset();
        const QMutexLocker lock(&shelf->mutex);
        if (shelf->pixels && shelf->pixels->bytes() == bytes) {
            pixels = std::move(shelf->pixels);
        }
    }
    if (!pixels) {
        pixels = SharedPixels::create(bytes);
    }
    return pixels ? std::make_unique<AttachedPixels>(m_connection, std::move(pixels)) : nullptr;
}

} // namespace lumenfold
