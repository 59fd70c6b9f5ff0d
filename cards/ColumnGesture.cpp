#include "cards/ColumnGesture.h"

#include <cmath>

namespace lumenfold {

ColumnGesture::Action ColumnGesture::scrolled(const PointerEvent &event, const Column &column)
{
    if (event.phase == GesturePhase::began || event.phase == GesturePhase::mayBegin) {
        forget();
        m_swipeLocked = false;
    } else if (event.phase == GesturePhase::ended || event.phase == GesturePhase::cancelled) {
        forget();
        return Action::none;
    }
    if (!std::isfinite(event.scrollingDeltaX) || !std::isfinite(event.scrollingDeltaY)) {
        return Action::none;
    }
    if (std::abs(event.scrollingDeltaY) >= std::abs(event.scrollingDeltaX)) {
        return scrolledVertically(event.scrollingDeltaY, column);
    }
    return column.isCollapsed ? Action::none : scrolledHorizontally(event, column);
}

void ColumnGesture::forget()
{
    m_scrollAccumulator = 0;
    m_swipeAccumulator = 0;
    m_swipeCard.reset();
}

ColumnGesture::Action ColumnGesture::scrolledVertically(double delta, const Column &column)
{
    m_scrollAccumulator += delta;
    if (m_scrollAccumulator >= collapseThreshold) {
        m_scrollAccumulator = 0;
        return column.isCollapsed ? Action::none : Action::collapse;
    }
    if (m_scrollAccumulator <= -collapseThreshold) {
        m_scrollAccumulator = 0;
        return column.isCollapsed ? Action::expand : Action::none;
    }
    return Action::none;
}

ColumnGesture::Action ColumnGesture::scrolledHorizontally(const PointerEvent &event, const Column &column)
{
    const bool hasNoPhases = event.phase == GesturePhase::none && event.momentumPhase == GesturePhase::none;
    if (hasNoPhases && event.timestamp - m_lastSwipeEventTime > swipeGestureGap) {
        m_swipeLocked = false;
    }
    m_lastSwipeEventTime = event.timestamp;
    if (m_swipeLocked) {
        return Action::none;
    }
    const Card card = column.cardUnderPointer();
    if (card != m_swipeCard.lock()) {
        m_swipeAccumulator = 0;
        m_swipeCard = card;
    }
    if (!card) {
        m_swipeAccumulator = 0;
        return Action::none;
    }
    m_swipeAccumulator += event.scrollingDeltaX;
    if (m_swipeAccumulator > -swipeDismissThreshold) {
        return Action::none;
    }
    m_swipeAccumulator = 0;
    m_swipeCard.reset();
    m_swipeLocked = true;
    return Action::throwAway;
}

} // namespace lumenfold
