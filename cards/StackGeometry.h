#pragma once

#include "platform/geometry/Geometry.h"

#include <optional>
#include <vector>

/// Where the cards of the column stand. Everything is in global points; a panel frame is the card's rectangle and the
/// hit margin around it. Without a screen every frame is the zero rectangle.
namespace lumenfold {

class AppConfig;
class Screens;

/// The measures that every frame of one layout pass is made from.
struct StackMetrics {
    /// Of the main screen; nothing while there is no screen.
    std::optional<Rect> visibleFrame;
    /// The visible size of every card of the column.
    Size cardSize;
    /// How many cards fit on top of each other; at least 1.
    int capacity = 1;

    [[nodiscard]] static StackMetrics current(const Screens &screens, const AppConfig &config);
};

/// What the column looks like.
struct StackState {
    int count = 0;
    bool isCollapsed = false;
    /// While collapsed: lifted fully into view.
    bool isDeckRevealed = false;
};

struct StackTarget {
    Rect frame;
    /// Behind another card of a deck.
    bool isBehind = false;
    /// Wholly beneath the next newer card, which stands in the very same place.
    bool isCovered = false;

    friend bool operator==(const StackTarget &, const StackTarget &) = default;
};

struct DeckPosition {
    /// Cards in front of it.
    int depth = 0;
    /// The deepest layer that is drawn distinctly; the collapsed stack's own when absent.
    std::optional<int> maxDepth;
    /// Sunk below the bottom of the visible frame, but for a strip.
    bool isPeeking = false;
};

/// The deepest layers drawn distinctly.
inline constexpr int collapseMaxDepth = 3;
inline constexpr int overflowDeckMaxDepth = 2;

/// Slot 0 is the lowest.
[[nodiscard]] Rect frameForSlot(const StackMetrics &metrics, int slot);
[[nodiscard]] Rect collapsedFrame(const StackMetrics &metrics, const DeckPosition &position);
/// A card that stands by itself above an overflow deck of `deckCount` cards.
[[nodiscard]] Rect overflowIndividualFrame(const StackMetrics &metrics, int slotAboveDeck, int deckCount);

/// Card 0 is the oldest of `state.count`.
[[nodiscard]] StackTarget targetFrame(const StackMetrics &metrics, const StackState &state, int cardIndex);
/// One for each card, oldest first.
[[nodiscard]] std::vector<StackTarget> targetFrames(const StackMetrics &metrics, const StackState &state);

/// The frame of the panel of the collapse pill; nothing without cards.
[[nodiscard]] std::optional<Rect> collapsePillPanelFrame(const StackMetrics &metrics, const StackState &state);
/// The frame of the panel of the Clear All pill; nothing where it must not be seen: collapsed, or fewer than two cards.
[[nodiscard]] std::optional<Rect> clearAllPillPanelFrame(const StackMetrics &metrics, const StackState &state);

} // namespace lumenfold
