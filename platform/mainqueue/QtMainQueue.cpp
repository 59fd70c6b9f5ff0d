#include "platform/mainqueue/QtMainQueue.h"

#include <QBasicTimer>
#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTimerEvent>

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <utility>
#include <vector>

namespace lumenfold {
namespace {

using Clock = std::chrono::steady_clock;

/// A later time is waited for in several steps.
constexpr std::chrono::milliseconds longestTimer = std::chrono::hours(1);

struct Entry {
    Clock::time_point due;
    std::uint64_t number = 0;
    MainQueue::Work work;

    [[nodiscard]] std::pair<Clock::time_point, std::uint64_t> place() const { return {due, number}; }
};

const QEvent::Type wakeEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

} // namespace

/// One list for all work and one timer for its head: with a timer for each piece of work the order among equal delays
/// would be left to the toolkit.
class QtMainQueue::Scheduler : public QObject {
public:
    /// The entry's number, by which it can be called off.
    std::uint64_t add(std::chrono::milliseconds delay, Work work)
    {
        const std::lock_guard lock(m_mutex);
        Entry entry{Clock::now() + std::max(delay, std::chrono::milliseconds(0)), ++m_lastNumber, std::move(work)};
        const auto place = std::ranges::upper_bound(m_entries, entry.place(), {}, &Entry::place);
        const auto inserted = m_entries.insert(place, std::move(entry));
        if (inserted == m_entries.begin()) {
            wake();
        }
        return m_lastNumber;
    }

    void cancel(std::uint64_t number)
    {
        // What the work holds is let go of outside the lock: it may ask for work while it goes.
        Work cancelled;
        const std::lock_guard lock(m_mutex);
        const auto found = std::ranges::find(m_entries, number, &Entry::number);
        if (found != m_entries.end()) {
            cancelled = std::move(found->work);
            m_entries.erase(found);
        }
    }

    bool event(QEvent *event) override
    {
        if (event->type() == wakeEvent) {
            {
                const std::lock_guard lock(m_mutex);
                m_isWakePosted = false;
            }
            runDue();
            return true;
        }
        return QObject::event(event);
    }

protected:
    void timerEvent(QTimerEvent *event) override
    {
        if (event->timerId() == m_timer.timerId()) {
            m_timer.stop();
            runDue();
        }
    }

private:
    /// From any thread: the event makes the scheduler's own thread look at the list. Called with the lock held.
    void wake()
    {
        if (!std::exchange(m_isWakePosted, true)) {
            QCoreApplication::postEvent(this, new QEvent(wakeEvent));
        }
    }

    /// Runs what was due and asked for when the call began; what that asks for waits for a later turn.
    void runDue()
    {
        const Clock::time_point now = Clock::now();
        std::unique_lock lock(m_mutex);
        const std::uint64_t limit = m_lastNumber;
        while (!m_entries.empty() && m_entries.front().due <= now && m_entries.front().number <= limit) {
            const Work work = std::move(m_entries.front().work);
            m_entries.erase(m_entries.begin());
            // Before the work and not after it: a drag session inside the work runs an event loop of its own, in which
            // the rest of the list has its turn too.
            arm();
            lock.unlock();
            work();
            lock.lock();
        }
        arm();
    }

    /// Called with the lock held.
    void arm()
    {
        if (m_entries.empty()) {
            m_timer.stop();
            return;
        }
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(m_entries.front().due - Clock::now());
        if (wait.count() <= 0) {
            wake();
            return;
        }
        m_timer.start(static_cast<int>(std::min(wait, longestTimer).count()), Qt::PreciseTimer, this);
    }

    std::mutex m_mutex;
    std::vector<Entry> m_entries;
    std::uint64_t m_lastNumber = 0;
    bool m_isWakePosted = false;
    QBasicTimer m_timer;
};

QtMainQueue::QtMainQueue() : m_scheduler(std::make_shared<Scheduler>()) {}

QtMainQueue::~QtMainQueue() = default;

void QtMainQueue::post(Work work)
{
    m_scheduler->add(std::chrono::milliseconds(0), std::move(work));
}

std::shared_ptr<ScheduledWork> QtMainQueue::after(std::chrono::milliseconds delay, Work work)
{
    class Handle : public ScheduledWork {
    public:
        Handle(std::weak_ptr<Scheduler> scheduler, std::uint64_t number)
            : m_scheduler(std::move(scheduler)), m_number(number)
        {
        }

        void cancel() override
        {
            if (const std::shared_ptr<Scheduler> scheduler = m_scheduler.lock()) {
                scheduler->cancel(m_number);
            }
        }

    private:
        std::weak_ptr<Scheduler> m_scheduler;
        std::uint64_t m_number;
    };
    const std::uint64_t number = m_scheduler->add(delay, std::move(work));
    return std::make_shared<Handle>(m_scheduler, number);
}

} // namespace lumenfold
