/// The column as a whole: where its cards stand, whether it is collapsed, and whether the pointer is over it.
#include "cards/PreviewWindowController.h"

#include "app/configuration/AppConfig.h"
#include "platform/mainqueue/MainQueue.h"
#include "platform/screens/Screens.h"

#include <QPointer>

#include <utility>

namespace lumenfold {
namespace {

using namespace std::chrono_literals;

constexpr auto layoutDuration = 200ms;
/// A covered panel leaves the screen when the one that covers it has arrived, with a frame or two to spare.
constexpr auto coveredPanelDelay = layoutDuration + 50ms;

} // namespace

std::vector<StackTarget> PreviewWindowController::currentTargets() const
{
    const std::vector<StackTarget> all =
        targetFrames(StackMetrics::current(m_with.screens, m_with.config), stackState());
    std::vector<StackTarget> targets;
    auto next = all.begin();
    forEachCard(
        [&](const CardPointer &card) {
            if (card->variant == PreviewCardVariant::stack) {
                targets.push_back(*next++);
            }
        },
        [&](const DismissedCard &awaited) { next += awaited.variant == PreviewCardVariant::stack ? 1 : 0; });
    return targets;
}

StackState PreviewWindowController::stackState() const
{
    StackState state{.isCollapsed = m_isCollapsed, .isDeckRevealed = m_isDeckRevealed};
    forEachCard(
        [&](const CardPointer &card) { state.count += card->variant == PreviewCardVariant::stack ? 1 : 0; },
        [&](const DismissedCard &awaited) { state.count += awaited.variant == PreviewCardVariant::stack ? 1 : 0; });
    return state;
}

void PreviewWindowController::layout()
{
    const std::vector<CardPointer> stack = stackCards();
    const std::vector<StackTarget> targets = currentTargets();
    std::vector<Panel *> seen;
    bool anyCovered = false;
    for (std::size_t index = 0; index < stack.size(); ++index) {
        Card &card = *stack[index];
        sendToTarget(card, targets[index]);
        anyCovered = anyCovered || card.isCovered;
        // A covered card is seen as long as it is on its way beneath the others.
        if (!card.isCovered || card.panel->isVisible()) {
            seen.push_back(card.panel.get());
        }
    }
    m_panels.orderFrontInSequence(seen);
    if (anyCovered) {
        scheduleCoveredPanelsOut();
    }
    if (m_isColumnHovered) {
        positionPills();
        bringPillsToFront();
    }
}

void PreviewWindowController::sendToTarget(Card &card, const StackTarget &target)
{
    card.model->setDeckBehind(target.isBehind);
    card.model->setCollapsed(m_isCollapsed && !m_isDeckRevealed);
    card.isCovered = target.isCovered;
    if (card.isCovered && !card.panel->isVisible()) {
        card.isPlaced = card.isPlaced && card.layoutFrame == target.frame;
        card.layoutFrame = target.frame;
        return;
    }
    if (!std::exchange(card.isPlaced, true) && card.layoutFrame) {
        card.panel->setFrame(*card.layoutFrame);
    }
    if (card.layoutFrame != target.frame) {
        card.layoutFrame = target.frame;
        card.panel->animate({.frame = target.frame, .duration = layoutDuration});
    }
}

void PreviewWindowController::place(Card &card, const Rect &frame)
{
    card.layoutFrame.reset();
    card.isPlaced = true;
    card.panel->setFrame(frame);
}

void PreviewWindowController::scheduleCoveredPanelsOut()
{
    if (m_coveredPanelsOut) {
        m_coveredPanelsOut->cancel();
    }
    m_coveredPanelsOut = m_with.queue.after(coveredPanelDelay, [self = QPointer(this)] {
        if (!self) {
            return;
        }
        for (const CardPointer &card : self->m_cards) {
            if (card->isCovered && card->panel->isVisible()) {
                self->m_panels.orderOut(*card->panel);
            }
        }
    });
}

void PreviewWindowController::toggleCollapse()
{
    if (m_isCollapsed) {
        expand();
    } else if (!stackCards().empty()) {
        collapse();
    }
}

void PreviewWindowController::setCollapsed(bool collapsed)
{
    m_isCollapsed = collapsed;
    m_isDeckRevealed = false;
    m_controlState.setCollapsed(collapsed);
}

void PreviewWindowController::collapse()
{
    setCollapsed(true);
    positionPills();
    layout();
}

void PreviewWindowController::expand()
{
    if (!m_isCollapsed) {
        return;
    }
    setCollapsed(false);
    positionPills();
    layout();
}

void PreviewWindowController::ensureColumnTracking()
{
    m_pills.ensurePanels();
    positionPills();
    m_tracking.start([self = QPointer(this)](const PointerEvent &event) {
        if (self) {
            self->handleColumnEvent(event);
        }
    });
}

void PreviewWindowController::teardownColumnTracking()
{
    m_tracking.stop();
    m_pills.orderOut();
    m_gesture.forget();
    m_isColumnHovered = false;
    setCollapsed(false);
}

void PreviewWindowController::positionPills()
{
    m_pills.position(StackMetrics::current(m_with.screens, m_with.config), stackState());
}

void PreviewWindowController::bringPillsToFront()
{
    m_pills.bringToFront(stackState());
}

} // namespace lumenfold
