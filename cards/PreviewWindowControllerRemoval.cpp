/// How cards leave, and how one comes back; the return of many is in PreviewWindowControllerRestoring.cpp.
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
    if (stackState().count < 2) {
        return;
    }
    const std::vector<CardPointer> stack = stackCards();
    UndoStack::Group group;
    forEachCard(
        [&](const CardPointer &card) {
            if (card->variant == PreviewCardVariant::stack) {
                group.push_back(recordOf(*card));
            }
        },
        [&](const DismissedCard &awaited) {
            DismissedCard loaded = awaited;
            if (awaited.variant == PreviewCardVariant::stack && load(loaded)) {
                group.push_back(std::move(loaded));
            }
        });
    if (m_with.store) {
        for (const DismissedCard &dismissed : group) {
            m_with.store->deleteImage(dismissed.screenshotId);
        }
    }
    if (!group.empty()) {
        m_undo.push(std::move(group));
    }

    for (const CardPointer &card : stack) {
        remove(card);
    }
    for (Restoring &restoring : m_restoring) {
        std::erase_if(restoring.remaining,
                      [](const DismissedCard &awaited) { return awaited.variant == PreviewCardVariant::stack; });
    }
    forgetEmptyRuns();
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

} // namespace lumenfold
