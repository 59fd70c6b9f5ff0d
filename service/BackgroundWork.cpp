#include "service/BackgroundWork.h"

#include "platform/image/EncodingPool.h"
#include "service/http/TransportError.h"

#include <QFutureWatcher>
#include <QPromise>
#include <QThreadPool>

#include <coroutine>

namespace lumenfold {

struct BackgroundWork::Waiting {
    std::coroutine_handle<> coroutine;
    bool isDone = false;
};

struct BackgroundWork::Ending {
    std::shared_ptr<Waiting> waiting;

    [[nodiscard]] bool await_ready() const noexcept { return waiting->isDone; }
    void await_suspend(std::coroutine_handle<> coroutine) const { waiting->coroutine = coroutine; }
    [[nodiscard]] bool await_resume() const noexcept { return waiting->isDone; }
};

BackgroundWork::~BackgroundWork()
{
    for (const auto &[number, waiting] : std::exchange(m_waiting, {})) {
        waiting->coroutine.resume();
    }
}

QCoro::Task<> BackgroundWork::finished(std::function<void()> work)
{
    Ending ending{begin(work)};
    const bool isDone = co_await ending;
    if (!isDone) {
        throw TransportError(TransportError::Kind::cancelled);
    }
}

std::shared_ptr<BackgroundWork::Waiting> BackgroundWork::begin(const std::function<void()> &work)
{
    const quint64 number = ++m_last;
    auto waiting = std::make_shared<Waiting>();
    m_waiting.emplace(number, waiting);

    const auto promise = std::make_shared<QPromise<void>>();
    auto *watcher = new QFutureWatcher<void>(&m_here);
    QObject::connect(watcher, &QFutureWatcher<void>::finished, &m_here, [this, number, watcher] {
        watcher->deleteLater();
        const auto entry = m_waiting.extract(number);
        entry.mapped()->isDone = true;
        entry.mapped()->coroutine.resume();
    });
    watcher->setFuture(promise->future());
    promise->start();
    backgroundPool().start([promise, work] {
        work();
        promise->finish();
    });
    return waiting;
}

} // namespace lumenfold
