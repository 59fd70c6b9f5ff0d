#include "platform/screencapture/PreparedPixels.h"

#include "platform/image/EncodingPool.h"

#include <QMutex>
#include <QThreadPool>

#include <chrono>
#include <utility>

namespace lumenfold {
namespace {

/// Far longer than from the announcement of a capture to the capture.
constexpr std::chrono::seconds patience{1};

} // namespace

/// Where the thread puts what it has made; it goes with whoever looks at it last.
struct PreparedPixels::Shelf {
    QMutex mutex;
    std::unique_ptr<SharedPixels> pixels;
};

PreparedPixels::PreparedPixels()
{
    m_end.setSingleShot(true);
    m_end.setInterval(patience);
    QObject::connect(&m_end, &QTimer::timeout, &m_end, [this] { m_shelf.reset(); });
}

PreparedPixels::~PreparedPixels() = default;

void PreparedPixels::prepare(std::size_t bytes)
{
    m_shelf = std::make_shared<Shelf>();
    m_end.start();
    backgroundPool().start([shelf = m_shelf, bytes] {
        auto pixels = SharedPixels::create(bytes);
        if (pixels) {
            pixels->touch();
            const QMutexLocker lock(&shelf->mutex);
            shelf->pixels = std::move(pixels);
        }
    });
}

std::unique_ptr<SharedPixels> PreparedPixels::take(std::size_t bytes)
{
    m_end.stop();
    if (const auto shelf = std::exchange(m_shelf, nullptr)) {
        const QMutexLocker lock(&shelf->mutex);
        if (shelf->pixels && shelf->pixels->bytes() == bytes) {
            return std::move(shelf->pixels);
        }
    }
    return SharedPixels::create(bytes);
}

} // namespace lumenfold
