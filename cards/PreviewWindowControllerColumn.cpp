/// The column as a whole: where its cards stand, whether it is collapsed, and whether the pointer is over it.
#include "cards/PreviewWindowController.h"

#include "app/configuration/AppConfig.h"
#include "platform/mainqueue/MainQueue.h"
#include "platform/screens/Screens.h"

#include <QPointer>

namespace lumenfold {
namespace {

using namespace std::chrono_literals;

constexpr auto layoutDuration = 200ms;
/// A covered panel leaves the screen when the one that covers it has arrived, with a frame or two to spare.
constexpr auto coveredPanelDelay = layoutDuration + 50ms;
/// The pointer counts as over the column this far from its panels.
constexpr double hoverMargin = 50;

} // namespace

std::vector<StackTarget> PreviewWindowController::currentTargets(const std::vector<CardPointer> &stack) const
{
    return targetFrames(
        StackMetrics::current(m_with.screens, m_with.config),
        {.count = static_cast<int>(stack.size()), .isCollapsed = m_isCollapsed, .isDeckRevealed = m_isDeckRevealed});
}

void PreviewWindowController::layout()
{
    const std::vector<CardPointer> stack = stackCards();
    const std::vector<StackTarget> targets = currentTargets(stack);
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
}

void PreviewWindowController::sendToTarget(Card &card, const StackTarget &target)
{
    card.model->setDeckBehind(target.isBehind);
    card.model->setCollapsed(m_isCollapsed && !m_isDeckRevealed);
    card.isCovered = target.isCovered;
    if (card.layoutFrame != target.frame) {
        card.layoutFrame = target.frame;
        card.panel->animate({.frame = target.frame, .duration = layoutDuration});
    }
}

void PreviewWindowController::place(Card &card, const Rect &frame)
{
    card.layoutFrame.reset();
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

void PreviewWindowController::collapse()
{
    m_isCollapsed = true;
    m_isDeckRevealed = false;
    layout();
}

void PreviewWindowController::expand()
{
    m_isCollapsed = false;
    m_isDeckRevealed = false;
    layout();
}

void PreviewWindowController::ensureColumnTracking()
{
    m_tracking.start([self = QPointer(this)](const PointerEvent &event) {
        if (self) {
            self->handleColumnEvent(event);
        }
    });
}

void PreviewWindowController::teardownColumnTracking()
{
    m_tracking.stop();
    m_isColumnHovered = false;
    m_isCollapsed = false;
    m_isDeckRevealed = false;
}

void PreviewWindowController::handleColumnEvent(const PointerEvent &event)
{
    const std::vector<CardPointer> stack = stackCards();
    if (event.type != PointerEventType::mouseMoved || stack.empty()) {
        return;
    }
    Rect area = stack.front()->panel->frame();
    for (const CardPointer &card : stack) {
        area = area.united(card->panel->frame());
    }
    const bool isInside = area.outsetBy(hoverMargin).contains(m_with.screens.pointerLocation());
    if (isInside == m_isColumnHovered) {
        return;
    }
    m_isColumnHovered = isInside;
    if (!isInside && m_isCollapsed && m_isDeckRevealed) {
        m_isDeckRevealed = false;
        layout();
    }
}

} // namespace lumenfold
