/// How cards leave, and how they come back.
#include "cards/PreviewWindowController.h"

#include "app/configuration/AppConfig.h"
#include "cards/CardStore.h"
#include "platform/mainqueue/MainQueue.h"
#include "platform/screens/Screens.h"

#include <QPointer>

#include <algorithm>
#include <iterator>
#include <utility>

namespace lumenfold {
namespace {

using namespace std::chrono_literals;

constexpr auto fadeOutDuration = 180ms;
constexpr auto slideOutDuration = 220ms;
constexpr auto clearAllDuration = 140ms;

/// Making one card's panel takes a millisecond or two.
constexpr std::size_t restoredPerTurn = 4;
/// Between two turns, so that the event loop gets to everything else.
constexpr auto restoringPause = 1ms;

DismissedCard recordOf(const PreviewWindowController::Card &card)
{
    const PreviewModel &model = *card.model;
    const bool isPinned = card.variant == PreviewCardVariant::pinned;
    return {.image = model.image(),
            .editorSourceImage = model.editorSourceImage(),
            .screenshotId = model.screenshotId(),
            .editorSourceId = model.editorSourceId(),
            .variant = card.variant,
            .frame = isPinned ? std::optional(card.panel->frame()) : std::nullopt};
}

} // namespace

void PreviewWindowController::dismiss(const CardPointer &card, DismissMotion motion, RecordUndo recordUndo)
{
    if (!isShown(card)) {
        return;
    }
    if (recordUndo == RecordUndo::yes) {
        m_undo.push({recordOf(*card)});
    }
    remove(card);
    if (m_with.store) {
        m_with.store->deleteImage(card->model->screenshotId());
    }
    PanelAnimation animation{.alpha = 0, .duration = fadeOutDuration, .curve = AnimationCurve::easeIn};
    if (motion == DismissMotion::slideLeft) {
        const Rect frame = card->panel->frame();
        animation.frame = frame.offsetBy(-frame.width, 0);
        animation.duration = slideOutDuration;
    }
    m_panels.depart(*card->panel, card, std::move(animation));

    layout();
    persistManifest();
    if (stackCards().empty()) {
        teardownColumnTracking();
    }
}

void PreviewWindowController::clearAll()
{
    const std::vector<CardPointer> stack = stackCards();
    if (stack.size() < 2) {
        return;
    }
    UndoStack::Group group;
    forEachCard(
        [&](const CardPointer &card) {
            if (card->variant == PreviewCardVariant::stack) {
                group.push_back(recordOf(*card));
            }
        },
        [&](const DismissedCard &awaited) { group.push_back(awaited); });
    if (m_with.store) {
        for (const DismissedCard &dismissed : group) {
            m_with.store->deleteImage(dismissed.screenshotId);
        }
    }
    m_undo.push(std::move(group));

    m_restoring.clear();
    std::erase_if(m_cards, [](const CardPointer &card) { return card->variant == PreviewCardVariant::stack; });
    std::vector<std::shared_ptr<void>> unseen;
    for (const CardPointer &card : stack) {
        if (card->panel->isVisible()) {
            m_panels.depart(*card->panel, card, {.alpha = 0, .duration = clearAllDuration});
        } else {
            unseen.push_back(card);
        }
    }
    m_panels.letGo(std::move(unseen));
    persistManifest();
    teardownColumnTracking();
}

bool PreviewWindowController::restoreLastDismissed()
{
    return m_undo.undoNewest([this](UndoStack::Group group) { bringBack(std::move(group)); });
}

void PreviewWindowController::bringBack(UndoStack::Group group)
{
    if (group.size() == 1) {
        bringBackOne(group.front());
        return;
    }
    if (m_with.store) {
        for (const DismissedCard &dismissed : group) {
            m_with.store->saveImage(dismissed.image, dismissed.screenshotId);
            m_with.store->saveEditorSourceImage(dismissed.editorSourceImage, dismissed.screenshotId);
        }
    }
    // Beneath the newest that the column and all layers of its deck can hold, nothing can be seen.
    const int capacity = StackMetrics::current(m_with.screens, m_with.config).capacity;
    const auto seenCount = static_cast<std::size_t>(capacity + overflowDeckMaxDepth + 1);
    m_restoring.push_back({.remaining = std::move(group), .position = m_cards.size()});
    presentStackCards(makeNewestAgain(m_restoring.back(), seenCount));
    scheduleNextRestored();
    persistManifest();
}

void PreviewWindowController::bringBackOne(const DismissedCard &dismissed)
{
    if (dismissed.variant == PreviewCardVariant::pinned) {
        showPinnedCard(dismissed.image, {.editorSourceImage = dismissed.editorSourceImage,
                                         .editorSourceId = dismissed.editorSourceId,
                                         .frame = dismissed.frame,
                                         .id = dismissed.screenshotId});
    } else {
        show(dismissed.image, {.editorSourceImage = dismissed.editorSourceImage,
                               .editorSourceId = dismissed.editorSourceId,
                               .id = dismissed.screenshotId});
    }
}

std::vector<PreviewWindowController::CardPointer> PreviewWindowController::makeNewestAgain(Restoring &restoring,
                                                                                           std::size_t count)
{
    UndoStack::Group &remaining = restoring.remaining;
    count = std::min(count, remaining.size());
    const auto first = std::prev(remaining.end(), static_cast<std::ptrdiff_t>(count));
    std::vector<CardPointer> made;
    std::transform(first, remaining.end(), std::back_inserter(made), [this](const DismissedCard &dismissed) {
        return makeCard({.image = dismissed.image,
                         .editorSourceImage = dismissed.editorSourceImage,
                         .editorSourceId = dismissed.editorSourceId,
                         .id = dismissed.screenshotId},
                        std::nullopt);
    });
    remaining.erase(first, remaining.end());
    m_cards.insert(std::next(m_cards.begin(), static_cast<std::ptrdiff_t>(restoring.position)), made.begin(),
                   made.end());
    // A later group stands further up.
    for (Restoring *later = &restoring + 1; later <= &m_restoring.back(); ++later) {
        later->position += count;
    }
    return made;
}

void PreviewWindowController::scheduleNextRestored()
{
    std::erase_if(m_restoring, [](const Restoring &restoring) { return restoring.remaining.empty(); });
    if (m_restoring.empty() || m_nextRestored) {
        return;
    }
    m_nextRestored = m_with.queue.after(restoringPause, [self = QPointer(this)] {
        if (!self) {
            return;
        }
        self->m_nextRestored.reset();
        if (!self->m_restoring.empty()) {
            self->placeStackCards(self->makeNewestAgain(self->m_restoring.front(), restoredPerTurn));
            self->scheduleNextRestored();
        }
    });
}

void PreviewWindowController::forEachCard(const std::function<void(const CardPointer &)> &shown,
                                          const std::function<void(const DismissedCard &)> &awaited) const
{
    auto restoring = m_restoring.begin();
    for (std::size_t index = 0; index <= m_cards.size(); ++index) {
        for (; restoring != m_restoring.end() && restoring->position == index; ++restoring) {
            std::ranges::for_each(restoring->remaining, awaited);
        }
        if (index < m_cards.size()) {
            shown(m_cards[index]);
        }
    }
}

} // namespace lumenfold
