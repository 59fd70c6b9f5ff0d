#include "cards/StackGeometry.h"

#include "app/configuration/AppConfig.h"
#include "platform/screens/Screens.h"

#include <algorithm>

namespace lumenfold {
namespace {

constexpr double margin = AppConfig::previewMargin;
constexpr double gap = AppConfig::previewCardGap;
constexpr double hitMargin = AppConfig::previewCardHitMargin;

/// The vertical step between the layers of a deck, and by how much of its size each layer is smaller.
constexpr double collapseLayerOffset = 20;
constexpr double collapseScaleStep = 0.06;
constexpr double smallestLayerScale = 0.5;
/// How much of a collapsed deck shows above the bottom of the visible frame.
constexpr double collapsedFrontPeek = 28;

constexpr Size collapsePillSize{44, 24};
constexpr Size clearPillBoxSize{132, 26};
/// Between the column's top and the Clear All pill.
constexpr double clearPillGap = 10;
/// The Clear All pill keeps this far from the top of the visible frame.
constexpr double clearPillScreenGap = 4;
/// The transparent band around a pill inside its panel.
constexpr double pillPanelPadding = 12;

int effectiveDepth(const DeckPosition &position)
{
    return std::clamp(position.depth, 0, std::max(position.maxDepth.value_or(collapseMaxDepth), 0));
}

/// How many of the cards of an expanded column share the deck at its bottom; 0 while all of them fit.
int overflowDeckCount(const StackMetrics &metrics, const StackState &state)
{
    return state.count > metrics.capacity ? state.count - metrics.capacity + 1 : 0;
}

StackTarget deckTarget(const StackMetrics &metrics, const DeckPosition &position)
{
    return {.frame = collapsedFrame(metrics, position),
            .isBehind = position.depth > 0,
            .isCovered = position.depth > effectiveDepth(position)};
}

/// All cards of the column without their hit margins. Cards that stand between others widen nothing, so two of the
/// individual cards and the layers of the deck are enough.
Rect columnUnion(const StackMetrics &metrics, const StackState &state)
{
    const int last = state.count - 1;
    const int deepest = std::max(overflowDeckCount(metrics, state) - 1, 0);
    Rect column = targetFrame(metrics, state, last).frame.insetBy(hitMargin);
    column = column.united(targetFrame(metrics, state, 0).frame.insetBy(hitMargin));
    for (int index = std::max(deepest - overflowDeckMaxDepth, 0); index <= deepest; ++index) {
        column = column.united(targetFrame(metrics, state, index).frame.insetBy(hitMargin));
    }
    return column;
}

Rect pillPanelFrame(Size pill, Point center)
{
    return Rect{center.x - pill.width / 2, center.y - pill.height / 2, pill.width, pill.height}.outsetBy(
        pillPanelPadding);
}

} // namespace

StackMetrics StackMetrics::current(const Screens &screens, const AppConfig &config)
{
    const std::optional<Screen> screen = screens.main();
    return {.visibleFrame = screen ? std::optional(screen->visibleFrame) : std::nullopt,
            .cardSize = config.previewCardDefaultSize(),
            .capacity = std::max(config.previewStackCapacity(), 1)};
}

Rect frameForSlot(const StackMetrics &metrics, int slot)
{
    if (!metrics.visibleFrame) {
        return {};
    }
    const auto [width, height] = metrics.cardSize;
    return Rect{metrics.visibleFrame->minX() + margin, metrics.visibleFrame->minY() + margin + (height + gap) * slot,
                width, height}
        .outsetBy(hitMargin);
}

Rect collapsedFrame(const StackMetrics &metrics, const DeckPosition &position)
{
    if (!metrics.visibleFrame) {
        return {};
    }
    const auto [width, height] = metrics.cardSize;
    const int depth = effectiveDepth(position);
    const double sunk = position.isPeeking ? margin + height - collapsedFrontPeek : 0;
    const double scale = std::max(1 - collapseScaleStep * depth, smallestLayerScale);
    const double centerX = metrics.visibleFrame->minX() + margin + width / 2;
    const double bottom = metrics.visibleFrame->minY() + margin + collapseLayerOffset * depth - sunk;
    return Rect{centerX - width * scale / 2, bottom, width * scale, height * scale}.outsetBy(hitMargin);
}

Rect overflowIndividualFrame(const StackMetrics &metrics, int slotAboveDeck, int deckCount)
{
    if (!metrics.visibleFrame) {
        return {};
    }
    const auto top = [&metrics](int depth) {
        return collapsedFrame(metrics, {.depth = depth, .maxDepth = overflowDeckMaxDepth}).maxY() - hitMargin;
    };
    double deckTop = top(0);
    for (int depth = 1; depth <= std::min(deckCount - 1, overflowDeckMaxDepth); ++depth) {
        deckTop = std::max(deckTop, top(depth));
    }
    const auto [width, height] = metrics.cardSize;
    return Rect{metrics.visibleFrame->minX() + margin, deckTop + gap + (height + gap) * slotAboveDeck, width, height}
        .outsetBy(hitMargin);
}

StackTarget targetFrame(const StackMetrics &metrics, const StackState &state, int cardIndex)
{
    if (state.isCollapsed) {
        return deckTarget(metrics, {.depth = state.count - 1 - cardIndex, .isPeeking = !state.isDeckRevealed});
    }
    const int deckCount = overflowDeckCount(metrics, state);
    if (deckCount == 0) {
        return {.frame = frameForSlot(metrics, cardIndex)};
    }
    if (cardIndex < deckCount) {
        return deckTarget(metrics, {.depth = deckCount - 1 - cardIndex, .maxDepth = overflowDeckMaxDepth});
    }
    return {.frame = overflowIndividualFrame(metrics, cardIndex - deckCount, deckCount)};
}

std::vector<StackTarget> targetFrames(const StackMetrics &metrics, const StackState &state)
{
    std::vector<StackTarget> targets;
    targets.reserve(static_cast<std::size_t>(std::max(state.count, 0)));
    for (int index = 0; index < state.count; ++index) {
        targets.push_back(targetFrame(metrics, state, index));
    }
    return targets;
}

std::optional<Rect> collapsePillPanelFrame(const StackMetrics &metrics, const StackState &state)
{
    if (state.count <= 0) {
        return std::nullopt;
    }
    if (!metrics.visibleFrame) {
        return Rect{};
    }
    if (state.isCollapsed) {
        const Rect front = targetFrame(metrics, state, state.count - 1).frame.insetBy(hitMargin);
        return pillPanelFrame(collapsePillSize, {front.midX(), front.maxY()});
    }
    const Rect column = columnUnion(metrics, state);
    return pillPanelFrame(collapsePillSize, {column.midX(), column.minY()});
}

std::optional<Rect> clearAllPillPanelFrame(const StackMetrics &metrics, const StackState &state)
{
    if (state.isCollapsed || state.count < 2) {
        return std::nullopt;
    }
    if (!metrics.visibleFrame) {
        return Rect{};
    }
    const Rect column = columnUnion(metrics, state);
    const double halfHeight = clearPillBoxSize.height / 2;
    const double above = column.maxY() + clearPillGap + halfHeight;
    const double highest = metrics.visibleFrame->maxY() - halfHeight - clearPillScreenGap;
    return pillPanelFrame(clearPillBoxSize, {column.midX(), std::min(above, highest)});
}

} // namespace lumenfold
