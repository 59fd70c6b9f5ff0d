#pragma once

#include <QtGlobal>

#include <chrono>
#include <coroutine>
#include <functional>
#include <memory>

namespace lumenfold {

/// Work that has been asked for and can still be called off. Destroying the handle leaves the work scheduled.
class ScheduledWork {
public:
    ScheduledWork() = default;
    ScheduledWork(const ScheduledWork &) = delete;
    ScheduledWork &operator=(const ScheduledWork &) = delete;
    virtual ~ScheduledWork() = default;

    /// The work does not run, if it has not begun.
    virtual void cancel() = 0;
};

/// Runs work on the main thread, later. Tests use one with virtual time. May be called from any thread; work asked for
/// with the same delay runs in the order in which it was asked for.
class MainQueue {
public:
    using Work = std::function<void()>;

    MainQueue() = default;
    MainQueue(const MainQueue &) = delete;
    MainQueue &operator=(const MainQueue &) = delete;
    virtual ~MainQueue() = default;

    /// Runs `work` in a later turn of the event loop, never inside this call.
    virtual void post(Work work) = 0;

    /// Runs `work` once, after `delay`. A handle that is not kept leaves the work scheduled.
    virtual std::shared_ptr<ScheduledWork> after(std::chrono::milliseconds delay, Work work) = 0;

    /// `co_await queue.sleep(60ms)`: goes on on the main thread after the delay.
    [[nodiscard]] auto sleep(std::chrono::milliseconds delay)
    {
        struct Sleep {
            MainQueue &queue;
            std::chrono::milliseconds delay;

            [[nodiscard]] bool await_ready() const noexcept { return false; }
            void await_suspend(std::coroutine_handle<> waiting) const
            {
                queue.after(delay, [waiting] { waiting.resume(); });
            }
            void await_resume() const noexcept {}
        };
        return Sleep{*this, delay};
    }
};

} // namespace lumenfold
