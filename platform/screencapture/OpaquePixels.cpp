#include "platform/screencapture/OpaquePixels.h"

#include "platform/image/EncodingPool.h"

#include <QPromise>
#include <QThreadPool>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

namespace lumenfold {
namespace {

/// Fewer lines are not worth a task.
constexpr int minLinesPerTask = 256;

struct Job {
    QPromise<QImage> promise;
    QImage image;
    std::uint32_t *firstLine = nullptr;
    std::atomic<int> tasksLeft = 0;
};

void makeOpaque(const Job &job, int top, int lines)
{
    constexpr std::uint32_t opaque = 0xff000000;
    const auto pixelsPerLine = static_cast<std::size_t>(job.image.bytesPerLine()) / sizeof(std::uint32_t);
    std::uint32_t *first = job.firstLine + static_cast<std::size_t>(top) * pixelsPerLine;
    std::for_each(first, first + static_cast<std::size_t>(lines) * pixelsPerLine,
                  [](std::uint32_t &pixel) { pixel |= opaque; });
}

} // namespace

QFuture<QImage> madeOpaque(QImage image)
{
    auto job = std::make_shared<Job>();
    job->image = std::move(image);
    QFuture<QImage> future = job->promise.future();
    job->promise.start();
    QThreadPool *pool = &encodingPool();
    if (job->image.format() != QImage::Format_RGB32) {
        pool->start([job] {
            job->promise.addResult(job->image.convertToFormat(QImage::Format_RGB32));
            job->promise.finish();
        });
        return future;
    }
    const int height = job->image.height();
    const int tasks = std::clamp(height / minLinesPerTask, 1, pool->maxThreadCount());
    job->firstLine = reinterpret_cast<std::uint32_t *>(job->image.bits());
    job->tasksLeft = tasks;
    for (int task = 0; task < tasks; ++task) {
        const int top = height * task / tasks;
        const int end = height * (task + 1) / tasks;
        pool->start([job, top, end] {
            makeOpaque(*job, top, end - top);
            if (--job->tasksLeft == 0) {
                job->promise.addResult(std::move(job->image));
                job->promise.finish();
            }
        });
    }
    return future;
}

} // namespace lumenfold
