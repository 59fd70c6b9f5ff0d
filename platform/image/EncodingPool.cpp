#include "platform/image/EncodingPool.h"

#include <QPromise>
#include <QThread>
#include <QThreadPool>

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace lumenfold {
namespace {

/// Long enough for the pictures of one burst of captures to share their threads.
constexpr std::chrono::milliseconds idleThreadLife{500};

struct PicturePool {
    explicit PicturePool(const QString &name)
    {
        pool.setObjectName(name);
        pool.setMaxThreadCount(std::max(2, QThread::idealThreadCount()));
        pool.setExpiryTimeout(static_cast<int>(idleThreadLife.count()));
    }

    QThreadPool pool;
};

} // namespace

QThreadPool &encodingPool()
{
    static PicturePool instance(QStringLiteral("PngEncoder"));
    return instance.pool;
}

QThreadPool &backgroundPool()
{
    static PicturePool instance(QStringLiteral("Pictures"));
    return instance.pool;
}

QFuture<QImage> makePicture(QThreadPool &pool, std::function<QImage()> make)
{
    auto promise = std::make_shared<QPromise<QImage>>();
    QFuture<QImage> future = promise->future();
    promise->start();
    pool.start([promise = std::move(promise), make = std::move(make)] {
        promise->addResult(make());
        promise->finish();
    });
    return future;
}

} // namespace lumenfold
