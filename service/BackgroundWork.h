#pragma once

#include <QCoroTask>
#include <QObject>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>

namespace lumenfold {

/// Work that takes more than a moment, done on a thread of the background pool for coroutines of the main thread.
class BackgroundWork {
public:
    BackgroundWork() = default;
    BackgroundWork(const BackgroundWork &) = delete;
    BackgroundWork &operator=(const BackgroundWork &) = delete;
    /// Nobody waits for what is not done: their `run` throws, in here.
    ~BackgroundWork();

    /// What `work` returns; throws TransportError (`cancelled`) when this object goes first.
    template <typename Result>
    [[nodiscard]] QCoro::Task<Result> run(std::function<Result()> work)
    {
        // The work may still be at it when nobody waits any more.
        const auto result = std::make_shared<std::optional<Result>>();
        const std::function<void()> whole = [result, work = std::move(work)] { result->emplace(work()); };
        co_await finished(whole);
        co_return std::move(**result);
    }

private:
    struct Waiting;
    struct Ending;

    [[nodiscard]] QCoro::Task<> finished(std::function<void()> work);
    [[nodiscard]] std::shared_ptr<Waiting> begin(const std::function<void()> &work);

    std::map<quint64, std::shared_ptr<Waiting>> m_waiting;
    quint64 m_last = 0;
    QObject m_here;
};

} // namespace lumenfold
