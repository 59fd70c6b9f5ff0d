#include "platform/image/EncodingPool.h"

#include <QThread>
#include <QThreadPool>

#include <algorithm>
#include <chrono>

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

} // namespace lumenfold
