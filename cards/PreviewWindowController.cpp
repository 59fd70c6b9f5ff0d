#include "cards/PreviewWindowController.h"

#include "app/configuration/AppConfig.h"
#include "cards/CardSizing.h"
#include "cards/CardStore.h"
#include "cards/CardViewFactory.h"
#include "platform/mainqueue/MainQueue.h"
#include "platform/screens/Screens.h"

#include <QPointer>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace lumenfold {
namespace {

using namespace std::chrono_literals;

constexpr auto fadeInDuration = 180ms;

Rect centeredIn(const std::optional<Rect> &area, Size size)
{
    if (!area) {
        return {};
    }
    return {area->midX() - size.width / 2, area->midY() - size.height / 2, size.width, size.height};
}

} // namespace

PreviewWindowController::PreviewWindowController(const Collaborators &collaborators)
    : m_with(collaborators)
    , m_panels(collaborators.panels, collaborators.queue)
    , m_pills(collaborators.panels, collaborators.views, m_controlState)
    , m_tracking(collaborators.monitors)
    , m_undo(collaborators.queue)
{
    connect(&m_with.screens, &Screens::changed, this, &PreviewWindowController::layout);
    m_undo.onAvailabilityChanged = [this](bool available) {
        if (onUndoAvailabilityChanged) {
            onUndoAvailabilityChanged(available);
        }
    };
    const auto ifAlive = [this](void (PreviewWindowController::*action)()) {
        return [self = QPointer(this), action] {
            if (self) {
                (self.data()->*action)();
            }
        };
    };
    m_controlState.onToggle = ifAlive(&PreviewWindowController::toggleCollapse);
    m_controlState.onClearAll = ifAlive(&PreviewWindowController::clearAll);
}

PreviewWindowController::~PreviewWindowController()
{
    for (const auto &work : {m_coveredPanelsOut, m_nextRestored}) {
        if (work) {
            work->cancel();
        }
    }
}

void PreviewWindowController::show(const Image &image, const ShowOptions &options)
{
    const CardPointer card = addStackCard(image, options);
    if (options.persist == Persist::yes) {
        saveImages(*card->model);
    }
    presentStackCards({card});
    if (options.persist == Persist::yes) {
        persistManifest();
    }
}

void PreviewWindowController::showPinnedCard(const Image &image, const PinnedCardOptions &options)
{
    const CardPointer card = addPinnedCard(image, options);
    if (options.persist == Persist::yes) {
        saveImages(*card->model);
    }
    m_panels.orderFront(*card->panel);
    if (options.persist == Persist::yes) {
        persistManifest();
    }
}

void PreviewWindowController::persistManifest()
{
    if (!m_with.store) {
        return;
    }
    std::vector<PersistedCard> entries;
    entries.reserve(m_cards.size());
    forEachCard(
        [&](const CardPointer &card) {
            const bool isPinned = card->variant == PreviewCardVariant::pinned;
            entries.push_back({.id = card->model->screenshotId(),
                               .editorSourceId = card->model->editorSourceId(),
                               .isPinned = isPinned,
                               .frame = isPinned ? std::optional(card->panel->frame()) : std::nullopt});
        },
        [&](const DismissedCard &card) {
            entries.push_back({.id = card.screenshotId,
                               .editorSourceId = card.editorSourceId,
                               .isPinned = card.variant == PreviewCardVariant::pinned,
                               .frame = card.frame});
        });
    m_with.store->writeManifest(entries);
}

void PreviewWindowController::setHiddenForCapture(bool hidden)
{
    m_panels.setHidden(hidden);
    m_pills.setHidden(hidden);
    if (hidden) {
        return;
    }
    for (const CardPointer &card : m_cards) {
        if (!card->isCovered) {
            m_panels.orderFront(*card->panel);
        }
    }
    layout();
}

std::vector<PreviewWindowController::CardPointer> PreviewWindowController::stackCards() const
{
    std::vector<CardPointer> stack;
    std::ranges::copy_if(m_cards, std::back_inserter(stack),
                         [](const CardPointer &card) { return card->variant == PreviewCardVariant::stack; });
    return stack;
}

void PreviewWindowController::bringToFront(const CardPointer &card)
{
    if (card->variant != PreviewCardVariant::stack || !isShown(card) || stackCards().back() == card) {
        return;
    }
    remove(card);
    m_cards.push_back(card);
    m_isDeckRevealed = m_isCollapsed;
    layout();
    persistManifest();
}

bool PreviewWindowController::isShown(const CardPointer &card) const
{
    return std::ranges::find(m_cards, card) != m_cards.end();
}

PreviewWindowController::CardPointer PreviewWindowController::addStackCard(const Image &image,
                                                                           const ShowOptions &options)
{
    return addCard({.image = image,
                    .editorSourceImage = options.editorSourceImage,
                    .editorSourceId = options.editorSourceId,
                    .variant = PreviewCardVariant::stack,
                    .id = options.id},
                   std::nullopt);
}

PreviewWindowController::CardPointer PreviewWindowController::addPinnedCard(const Image &image,
                                                                            const PinnedCardOptions &options)
{
    return addCard({.image = image,
                    .editorSourceImage = options.editorSourceImage,
                    .editorSourceId = options.editorSourceId,
                    .variant = PreviewCardVariant::pinned,
                    .id = options.id},
                   options.frame);
}

PreviewWindowController::CardPointer PreviewWindowController::addCard(PreviewModel::Options options,
                                                                      const std::optional<Rect> &frame)
{
    m_cards.push_back(makeCard(std::move(options), frame));
    return m_cards.back();
}

PreviewWindowController::CardPointer PreviewWindowController::makeCard(PreviewModel::Options options,
                                                                       const std::optional<Rect> &frame)
{
    const auto model = std::make_shared<PreviewModel>(m_with.config, std::move(options));
    if (model->variant() == PreviewCardVariant::pinned && !frame) {
        model->lockSizeToImageRatio();
    }
    if (model->editorSourceImage() != model->image()) {
        // The view lets the image's pixels go when it has what it shows of them; nobody shows this one.
        model->editorSourceImage().releasePixelsWhenEncoded();
    }
    const Rect content = Rect{.width = model->cardSize().width, .height = model->cardSize().height}.outsetBy(
        cardHitMargin(model->variant()));
    const Rect centered = centeredIn(StackMetrics::current(m_with.screens, m_with.config).visibleFrame, content.size());

    auto card = std::make_shared<Card>();
    card->variant = model->variant();
    card->panel = m_panels.makePanel(card->variant, frame.value_or(centered), m_with.views.makeCardView(model));
    card->model = model;
    wire(card);
    return card;
}

void PreviewWindowController::remove(const CardPointer &card)
{
    const auto found = std::ranges::find(m_cards, card);
    const auto index = static_cast<std::size_t>(found - m_cards.begin());
    m_cards.erase(found);
    for (Restoring &restoring : m_restoring) {
        restoring.position -= restoring.position > index ? 1 : 0;
    }
}

void PreviewWindowController::presentStackCards(const std::vector<CardPointer> &added)
{
    if (added.empty()) {
        return;
    }
    setCollapsed(false);
    placeStackCards(added);
    ensureColumnTracking();
}

void PreviewWindowController::placeStackCards(const std::vector<CardPointer> &added)
{
    const std::vector<CardPointer> stack = stackCards();
    const std::vector<StackTarget> targets = currentTargets();
    // What was added at once stands together.
    const auto first = static_cast<std::size_t>(std::ranges::find(stack, added.front()) - stack.begin());
    for (std::size_t index = first; index < first + added.size(); ++index) {
        Card &card = *stack[index];
        const StackTarget &target = targets[index];
        card.model->setDeckBehind(target.isBehind);
        card.model->setCollapsed(m_isCollapsed && !m_isDeckRevealed);
        card.isCovered = target.isCovered;
        card.isPlaced = !card.isCovered;
        card.layoutFrame = target.frame;
        if (!card.isCovered) {
            card.panel->setFrame(target.frame);
            card.panel->setAlpha(0);
            m_panels.orderFront(*card.panel);
        }
    }
    if (std::ranges::all_of(added, [](const CardPointer &card) { return card->isCovered; })) {
        // Whoever lies above them stands as before.
        return;
    }
    layout();
    for (const CardPointer &card : added) {
        if (!card->isCovered) {
            card->panel->animate({.alpha = 1, .duration = fadeInDuration});
        }
    }
}

void PreviewWindowController::saveImages(const PreviewModel &model)
{
    if (m_with.store) {
        m_with.store->saveImage(model.image(), model.screenshotId());
        m_with.store->saveEditorSourceImage(model.editorSourceImage(), model.screenshotId());
    }
}

} // namespace lumenfold
