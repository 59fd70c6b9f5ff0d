#pragma once

#include "platform/mainqueue/MainQueue.h"

#include <memory>

namespace lumenfold {

/// The main queue on the event loop of the thread that makes it. Delays are kept to the millisecond and never cut
/// short. Work that still waits when the queue goes away does not run.
class QtMainQueue : public MainQueue {
public:
    QtMainQueue();
    ~QtMainQueue() override;

    void post(Work work) override;
    std::shared_ptr<ScheduledWork> after(std::chrono::milliseconds delay, Work work) override;

private:
    class Scheduler;
    std::shared_ptr<Scheduler> m_scheduler;
};

} // namespace lumenfold
