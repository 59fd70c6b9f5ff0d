#include "tests/support/fakes/FakeMainQueue.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace lumenfold::test {

class FakeMainQueue::Item : public ScheduledWork {
public:
    Item(std::chrono::milliseconds due, Work work) : m_due(due), m_work(std::move(work)) {}

    void cancel() override { m_isCancelled = true; }

    [[nodiscard]] bool isCancelled() const { return m_isCancelled; }
    [[nodiscard]] std::chrono::milliseconds due() const { return m_due; }

    /// The work is let go of afterwards, together with whatever it holds.
    void run() { std::exchange(m_work, nullptr)(); }

private:
    std::chrono::milliseconds m_due;
    Work m_work;
    std::atomic<bool> m_isCancelled = false;
};

FakeMainQueue::FakeMainQueue() = default;

FakeMainQueue::~FakeMainQueue() = default;

void FakeMainQueue::post(Work work)
{
    after(std::chrono::milliseconds(0), std::move(work));
}

std::shared_ptr<ScheduledWork> FakeMainQueue::after(std::chrono::milliseconds delay, Work work)
{
    const std::lock_guard lock(m_mutex);
    auto item = std::make_shared<Item>(m_now + std::max(delay, std::chrono::milliseconds(0)), std::move(work));
    const auto place = std::ranges::upper_bound(m_items, item->due(), {}, &Item::due);
    m_items.insert(place, item);
    return item;
}

void FakeMainQueue::advance(std::chrono::milliseconds duration)
{
    const std::chrono::milliseconds end = now() + duration;
    while (const std::shared_ptr<Item> item = takeNextDue(end)) {
        item->run();
    }
    const std::lock_guard lock(m_mutex);
    m_now = end;
}

void FakeMainQueue::runPosted()
{
    advance(std::chrono::milliseconds(0));
}

std::chrono::milliseconds FakeMainQueue::now() const
{
    const std::lock_guard lock(m_mutex);
    return m_now;
}

std::size_t FakeMainQueue::pendingCount() const
{
    return pendingDelays().size();
}

std::vector<std::chrono::milliseconds> FakeMainQueue::pendingDelays() const
{
    const std::lock_guard lock(m_mutex);
    std::vector<std::chrono::milliseconds> delays;
    for (const std::shared_ptr<Item> &item : m_items) {
        if (!item->isCancelled()) {
            delays.push_back(item->due() - m_now);
        }
    }
    return delays;
}

std::shared_ptr<FakeMainQueue::Item> FakeMainQueue::takeNextDue(std::chrono::milliseconds limit)
{
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_items, [](const std::shared_ptr<Item> &item) { return item->isCancelled(); });
    if (m_items.empty() || m_items.front()->due() > limit) {
        return nullptr;
    }
    std::shared_ptr<Item> item = m_items.front();
    m_items.erase(m_items.begin());
    m_now = std::max(m_now, item->due());
    return item;
}

} // namespace lumenfold::test
