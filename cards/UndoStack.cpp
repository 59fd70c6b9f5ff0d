#include "cards/UndoStack.h"

#include "platform/image/EncodingPool.h"
#include "platform/mainqueue/MainQueue.h"

#include <QPointer>
#include <QThreadPool>

#include <utility>

namespace lumenfold {
namespace {

/// Giving the memory of many images back takes a while, and nobody needs to wait for it.
void letGoElsewhere(std::vector<UndoStack::Group> groups)
{
    const auto held = std::make_shared<std::vector<UndoStack::Group>>(std::move(groups));
    backgroundPool().start([held] { held->clear(); });
}

} // namespace

UndoStack::UndoStack(MainQueue &queue) : m_queue(queue) {}

UndoStack::~UndoStack()
{
    cancelExpiry();
}

void UndoStack::push(Group group)
{
    m_groups.push_back(std::move(group));
    scheduleUndoExpiry();
    tell(true);
}

bool UndoStack::undoNewest(const std::function<void(Group group)> &bringBack)
{
    if (m_groups.empty()) {
        return false;
    }
    Group newest = std::move(m_groups.back());
    m_groups.pop_back();
    bringBack(std::move(newest));
    if (!m_groups.empty()) {
        scheduleUndoExpiry();
    } else {
        cancelExpiry();
        tell(false);
    }
    return true;
}

void UndoStack::scheduleUndoExpiry()
{
    cancelExpiry();
    m_expiry = m_queue.after(undoWindow, [self = QPointer(this)] {
        if (self) {
            self->m_expiry.reset();
            letGoElsewhere(std::exchange(self->m_groups, {}));
            self->tell(false);
        }
    });
}

void UndoStack::cancelExpiry()
{
    if (m_expiry) {
        m_expiry->cancel();
        m_expiry.reset();
    }
}

void UndoStack::tell(bool available)
{
    if (const auto callback = onAvailabilityChanged) {
        callback(available);
    }
}

} // namespace lumenfold
