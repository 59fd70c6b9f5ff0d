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
#include <numeric>
#include <utility>

namespace lumenfold {
namespace {

using namespace std::chrono_literals;

/// Making one card's panel takes a millisecond or two, and showing it three or four more.
constexpr std::size_t restoredPerTurn = 4;
constexpr std::size_t seenPerTurn = 2;
/// Between two turns, so that the event loop gets to everything else.
constexpr auto restoringPause = 5ms;
/// Cards that nobody sees wait until the others have been painted and have faded in.
constexpr auto unseenDelay = 300ms;

bool isStackCard(const DismissedCard &card)
{
    return card.variant == PreviewCardVariant::stack;
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
    // From the newest to the oldest, so everything is the wrong way round.
    std::vector<CardPointer> seen;
    std::vector<Restoring> runs;
    UndoStack::Group run;
    const auto endRun = [&] {
        if (!run.empty()) {
            std::ranges::reverse(run);
            runs.push_back({.remaining = std::exchange(run, {}), .position = seen.size()});
        }
    };
    for (; !entries.empty(); entries.pop_back()) {
        DismissedCard card = inStore(entries.back());
        if (!isStackCard(card) || seen.size() >= seenCount) {
            if (!run.empty() && run.back().variant != card.variant) {
                endRun();
            }
            run.push_back(std::move(card));
        } else if (load(card)) {
            endRun();
            seen.push_back(makeAgain(card));
        }
    }
    endRun();
    for (Restoring &restoring : runs) {
        restoring.position = m_cards.size() + seen.size() - restoring.position;
    }
    m_restoring.insert(m_restoring.end(), runs.rbegin(), runs.rend());
    std::ranges::reverse(seen);
    m_cards.insert(m_cards.end(), seen.begin(), seen.end());
    m_isListToBeWritten = true;
    presentStackCards(seen);
    const auto awaited =
        std::accumulate(m_restoring.begin(), m_restoring.end(), std::size_t{0},
                        [](std::size_t sum, const Restoring &one) { return sum + one.remaining.size(); });
    if (awaited <= restoredPerTurn) {
        while (!m_restoring.empty()) {
            restoreSome();
        }
    }
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

bool PreviewWindowController::load(DismissedCard &card) const
{
    if (!card.image.isNull()) {
        return true;
    }
    const std::optional<Image> image = m_with.store ? m_with.store->loadImage(card.screenshotId) : std::nullopt;
    if (!image) {
        return false;
    }
    card.image = *image;
    card.editorSourceImage = m_with.store->loadEditorSourceImage(card.screenshotId).value_or(*image);
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
    const auto pinned =
        std::ranges::find_if(m_restoring, [](const Restoring &run) { return !isStackCard(run.remaining.front()); });
    return pinned == m_restoring.end() ? std::prev(m_restoring.end()) : pinned;
}

bool PreviewWindowController::isNextSeen()
{
    const auto run = nextRun();
    if (!isStackCard(run->remaining.front())) {
        return true;
    }
    const auto firstNewer = std::next(m_cards.begin(), static_cast<std::ptrdiff_t>(run->position));
    const auto newer = std::count_if(
        firstNewer, m_cards.end(), [](const CardPointer &card) { return card->variant == PreviewCardVariant::stack; });
    return static_cast<std::size_t>(newer) < mostCardsSeen();
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
    if (made.front()->variant == PreviewCardVariant::stack) {
        placeStackCards(made);
        if (stackCards().size() == made.size()) {
            // All others went meanwhile.
            ensureColumnTracking();
        }
        return;
    }
    for (const CardPointer &card : made) {
        m_panels.orderFront(*card->panel);
    }
    const auto lastMade = std::ranges::find(m_cards, made.back());
    const bool isBeneathColumn = std::any_of(
        lastMade, m_cards.end(), [](const CardPointer &card) { return card->variant == PreviewCardVariant::stack; });
    if (isBeneathColumn) {
        layout();
    }
}

void PreviewWindowController::restoreSome()
{
    const int before = stackState().count;
    placeMadeAgain(makeSomeAgain(isNextSeen() ? seenPerTurn : restoredPerTurn));
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
    const auto pause = isNextSeen() || std::exchange(m_haveUnseenWaited, true) ? restoringPause : unseenDelay;
    m_nextRestored = m_with.queue.after(pause, [self = QPointer(this)] {
        if (!self) {
            return;
        }
        self->m_nextRestored.reset();
        self->forgetEmptyRuns();
        if (!self->m_restoring.empty()) {
            self->restoreSome();
        }
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
