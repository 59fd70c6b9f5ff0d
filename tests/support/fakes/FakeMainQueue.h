#pragma once

#include "platform/mainqueue/MainQueue.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

namespace lumenfold::test {

/// A main queue with a clock of its own, which stands still until a test moves it. Work runs only inside advance() and
/// runPosted(), on the thread of the test: in the order of its time, and at one time in the order in which it was asked
/// for. May be asked for work from any thread.
class FakeMainQueue : public MainQueue {
public:
    FakeMainQueue();
    ~FakeMainQueue() override;

    void post(Work work) override;
    std::shared_ptr<ScheduledWork> after(std::chrono::milliseconds delay, Work work) override;

    /// Moves the clock forward and runs on the way everything that is due, also what that asks for.
    void advance(std::chrono::milliseconds duration);

    /// Runs what is due without moving the clock.
    void runPosted();

    /// How long the clock has gone since the queue was made.
    [[nodiscard]] std::chrono::milliseconds now() const;

    /// How much work waits that has been neither run nor cancelled.
    [[nodiscard]] std::size_t pendingCount() const;

    /// The delays of the waiting work, the next one first, counted from now.
    [[nodiscard]] std::vector<std::chrono::milliseconds> pendingDelays() const;

private:
    class Item;

    [[nodiscard]] std::shared_ptr<Item> takeNextDue(std::chrono::milliseconds limit);

    mutable std::mutex m_mutex;
    /// Sorted by time; equal times in the order of asking.
    std::vector<std::shared_ptr<Item>> m_items;
    std::chrono::milliseconds m_now{0};
};

} // namespace lumenfold::test
