#pragma once

#include "platform/events/EventMonitors.h"

#include <functional>
#include <memory>

namespace lumenfold {

/// What scrolling over the column asks for: up collapses it, down expands it, to the left throws the card under the
/// pointer away. Only sums up; whoever holds it acts.
class ColumnGesture {
public:
    enum class Action { none, collapse, expand, throwAway };
    /// Some card, as a thing that can be told from others.
    using Card = std::shared_ptr<const void>;

    struct Column {
        bool isCollapsed = false;
        /// The card that a swipe would throw away; null when there is none. Asked only when it matters.
        std::function<Card()> cardUnderPointer;
    };

    /// So much vertical scrolling, in points, collapses or expands.
    static constexpr double collapseThreshold = 18;
    /// So much scrolling to the left, in points, throws a card away.
    static constexpr double swipeDismissThreshold = 55;
    /// Devices without gesture phases begin a new swipe after a pause of more than this many seconds.
    static constexpr double swipeGestureGap = 0.35;

    /// Takes one scroll event over the column. `throwAway` means the card that `cardUnderPointer` has just told.
    [[nodiscard]] Action scrolled(const PointerEvent &event, const Column &column);

    /// The column is gone; what has been summed up means nothing any more.
    void forget();

private:
    [[nodiscard]] Action scrolledVertically(double delta, const Column &column);
    [[nodiscard]] Action scrolledHorizontally(const PointerEvent &event, const Column &column);

    double m_scrollAccumulator = 0;
    double m_swipeAccumulator = 0;
    /// The card that `m_swipeAccumulator` belongs to.
    std::weak_ptr<const void> m_swipeCard;
    /// Set by a swipe that threw a card away, so that the rest of it, and its momentum, spares the next one.
    bool m_swipeLocked = false;
    /// Seconds of the event clock.
    double m_lastSwipeEventTime = 0;
};

} // namespace lumenfold
