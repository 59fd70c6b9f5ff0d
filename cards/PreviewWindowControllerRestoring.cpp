/// How many cards come back together, from the last run or from a removal that is undone: a few in each turn of the
/// event loop, those that will be seen first.
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

/// Making one card's panel takes a millisecond or two, and showing it three or four more.
constexpr std::size_t restoredPerTurn = 4;
constexpr std::size_t seenPerTurn = 1;
/// Between two turns, so that the event loop gets to everything else: to what the user does, and to painting what was
/// shown, which takes as long as making it.
constexpr auto restoringPause = 5ms;
constexpr auto seenPause = 8ms;
/// Cards that nobody sees wait until the others have been painted and have faded in.
constexpr auto unseenDelay = 300ms;

bool isStackCard(const DismissedCard &card)
{
    return card.variant == PreviewCardVariant::stack;
}

bool isOnStack(const PreviewWindowController::CardPointer &card)
{
    return card->variant == PreviewCardVariant::stack;
}

DismissedCard inStore(const PersistedCard &entry)
{
    return {.image = {},
            .editorSourceImage = {},
            .screenshotId = entry.id,
            .editorSourceId = entry.editorSourceId.value_or(entry.id),
            .variant = entry.isPinned ? PreviewCardVariant::pinned : PreviewCardVariant::stack,
            .frame = entry.isPinned ? entry.frame : std::nullopt};
}

} // namespace

void PreviewWindowController::restore()
{
    if (!m_with.store) {
        return;
    }
    std::vector<PersistedCard> entries = m_with.store->readManifest();
    const std::size_t seenCount = mostCardsSeen();
    std::size_t seen = 0;
    // From the newest to the oldest, so everything is the wrong way round.
    std::vector<Restoring> runs;
    for (; !entries.empty(); entries.pop_back()) {
        DismissedCard card = inStore(entries.back());
        if (isStackCard(card) && seen < seenCount) {
            // Those that will be seen get their places by what is known of all of them.
            if (!loadImage(card)) {
                continue;
            }
            ++seen;
        }
        if (runs.empty() || runs.back().remaining.front().variant != card.variant) {
            runs.push_back({.remaining = {}, .position = m_cards.size()});
        }
        runs.back().remaining.push_back(std::move(card));
    }
    for (Restoring &run : runs) {
        std::ranges::reverse(run.remaining);
    }
    m_restoring.insert(m_restoring.end(), std::move_iterator(runs.rbegin()), std::move_iterator(runs.rend()));
    m_isListToBeWritten = true;
    if (seen > 0) {
        setCollapsed(false);
    }
    restoreSome();
    scheduleNextRestored();
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
    m_restoring.push_back({.remaining = std::move(group), .position = m_cards.size()});
    presentStackCards(makeSomeAgain(seenPerTurn));
    scheduleNextRestored();
    persistManifest();
}

std::size_t PreviewWindowController::mostCardsSeen() const
{
    // Beneath the newest that the column and all layers of its deck can hold, nothing can be seen.
    const int capacity = StackMetrics::current(m_with.screens, m_with.config).capacity;
    return static_cast<std::size_t>(capacity + overflowDeckMaxDepth + 1);
}

bool PreviewWindowController::loadImage(DismissedCard &card) const
{
    if (card.image.isNull() && m_with.store) {
        card.image = m_with.store->loadImage(card.screenshotId).value_or(Image());
    }
    return !card.image.isNull();
}

bool PreviewWindowController::load(DismissedCard &card) const
{
    if (!loadImage(card)) {
        return false;
    }
    if (card.editorSourceImage.isNull() && m_with.store) {
        card.editorSourceImage = m_with.store->loadEditorSourceImage(card.screenshotId).value_or(card.image);
    }
    return true;
}

PreviewWindowController::CardPointer PreviewWindowController::makeAgain(const DismissedCard &card)
{
    return makeCard({.image = card.image,
                     .editorSourceImage = card.editorSourceImage,
                     .editorSourceId = card.editorSourceId,
                     .variant = card.variant,
                     .id = card.screenshotId},
                    card.frame);
}

std::vector<PreviewWindowController::Restoring>::iterator PreviewWindowController::nextRun()
{
    const auto isOfColumn = [](const Restoring &run) { return isStackCard(run.remaining.front()); };
    const auto newestOfColumn = std::ranges::find_if(m_restoring.rbegin(), m_restoring.rend(), isOfColumn);
    if (newestOfColumn != m_restoring.rend() && isSeen(*newestOfColumn)) {
        return std::prev(newestOfColumn.base());
    }
    const auto pinned = std::ranges::find_if_not(m_restoring, isOfColumn);
    return pinned != m_restoring.end() ? pinned : std::prev(m_restoring.end());
}

bool PreviewWindowController::isSeen(const Restoring &run) const
{
    if (!isStackCard(run.remaining.front())) {
        return true;
    }
    const auto firstNewer = std::next(m_cards.begin(), static_cast<std::ptrdiff_t>(run.position));
    return static_cast<std::size_t>(std::count_if(firstNewer, m_cards.end(), isOnStack)) < mostCardsSeen();
}

std::vector<PreviewWindowController::CardPointer> PreviewWindowController::makeSomeAgain(std::size_t count)
{
    const auto run = nextRun();
    UndoStack::Group &remaining = run->remaining;
    const bool areStackCards = isStackCard(remaining.front());
    const std::size_t taken = std::min(count, remaining.size());
    const auto first =
        areStackCards ? std::prev(remaining.end(), static_cast<std::ptrdiff_t>(taken)) : remaining.begin();
    const auto last = std::next(first, static_cast<std::ptrdiff_t>(taken));
    std::vector<CardPointer> made;
    for (auto next = first; next != last; ++next) {
        if (load(*next)) {
            made.push_back(makeAgain(*next));
        }
    }
    remaining.erase(first, last);
    m_cards.insert(std::next(m_cards.begin(), static_cast<std::ptrdiff_t>(run->position)), made.begin(), made.end());
    for (auto other = areStackCards ? std::next(run) : run; other != m_restoring.end(); ++other) {
        other->position += made.size();
    }
    return made;
}

void PreviewWindowController::placeMadeAgain(const std::vector<CardPointer> &made)
{
    if (made.empty()) {
        return;
    }
    const bool isColumn = isOnStack(made.front());
    if (isColumn) {
        placeStackCards(made);
        if (stackCards().size() == made.size()) {
            // The first ones, or all others went meanwhile.
            ensureColumnTracking();
        }
    } else {
        for (const CardPointer &card : made) {
            m_panels.orderFront(*card->panel);
        }
    }
    auto newer = std::next(std::ranges::find(m_cards, made.back()));
    const auto newestOfColumn = std::find_if(m_cards.rbegin(), std::reverse_iterator(newer), isOnStack);
    if (newestOfColumn.base() != newer) {
        newer = newestOfColumn.base();
        if (!isColumn) {
            // Pinned before the column got its newest card, which came to the front with all others.
            layout();
        }
    }
    // Pinned since then.
    std::vector<Panel *> front;
    for (; newer != m_cards.end(); ++newer) {
        if ((*newer)->panel->isVisible()) {
            front.push_back((*newer)->panel.get());
        }
    }
    m_panels.orderFrontInSequence(front);
}

void PreviewWindowController::restoreSome()
{
    if (m_restoring.empty()) {
        return;
    }
    const int before = stackState().count;
    placeMadeAgain(makeSomeAgain(isSeen(*nextRun()) ? seenPerTurn : restoredPerTurn));
    forgetEmptyRuns();
    if (stackState().count != before) {
        // Some could not be read, and the others had left room for them.
        layout();
    }
}

void PreviewWindowController::forgetEmptyRuns()
{
    std::erase_if(m_restoring, [](const Restoring &restoring) { return restoring.remaining.empty(); });
}

void PreviewWindowController::scheduleNextRestored()
{
    forgetEmptyRuns();
    if (m_restoring.empty()) {
        m_haveUnseenWaited = false;
        if (std::exchange(m_isListToBeWritten, false)) {
            persistManifest();
        }
        return;
    }
    if (m_nextRestored) {
        return;
    }
    auto pause = seenPause;
    if (!isSeen(*nextRun())) {
        pause = std::exchange(m_haveUnseenWaited, true) ? restoringPause : unseenDelay;
    }
    m_nextRestored = m_with.queue.after(pause, [self = QPointer(this)] {
        if (!self) {
            return;
        }
        self->m_nextRestored.reset();
        self->forgetEmptyRuns();
        self->restoreSome();
        self->scheduleNextRestored();
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
