#include "cards/UndoStack.h"

#include "platform/mainqueue/MainQueue.h"

#include <QPointer>

#include <utility>

namespace lumenfold {

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
            self->m_groups.clear();
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
