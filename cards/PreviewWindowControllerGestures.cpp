/// What the pointer does over the column: hovering shows the pills, scrolling collapses, expands and throws away.
#include "cards/PreviewWindowController.h"

#include "app/configuration/AppConfig.h"

#include <algorithm>

namespace lumenfold {
namespace {

/// The pointer counts as over the column this far from its panels.
constexpr double hoverMargin = 50;

} // namespace

void PreviewWindowController::handleColumnEvent(const PointerEvent &event)
{
    const std::vector<CardPointer> stack = stackCards();
    if (stack.empty()) {
        return;
    }
    // Of the cards in one place only the front one is looked at; the newest card of the column is never covered.
    Rect area = stack.back()->panel->frame();
    for (const CardPointer &card : stack) {
        if (!card->isCovered) {
            area = area.united(card->panel->frame());
        }
    }
    const bool isInside = m_pills.unitedWith(area.outsetBy(hoverMargin)).contains(event.location);
    if (event.type == PointerEventType::mouseMoved) {
        handleHover(isInside);
    } else if (event.type == PointerEventType::scrollWheel && isInside && !m_panels.areHidden()) {
        // Hidden cards are not to be collapsed or thrown away by what is meant for what stands there instead.
        handleScroll(event);
    }
}

void PreviewWindowController::handleHover(bool isInside)
{
    if (isInside == m_isColumnHovered) {
        return;
    }
    m_isColumnHovered = isInside;
    if (isInside) {
        positionPills();
        bringPillsToFront();
        return;
    }
    m_pills.orderOut();
    if (m_isCollapsed && m_isDeckRevealed) {
        m_isDeckRevealed = false;
        layout();
    }
}

void PreviewWindowController::handleScroll(const PointerEvent &event)
{
    CardPointer found;
    const auto cardUnderPointer = [&]() -> ColumnGesture::Card {
        found = stackCardAt(event.location);
        return found;
    };
    switch (m_gesture.scrolled(event, {.isCollapsed = m_isCollapsed, .cardUnderPointer = cardUnderPointer})) {
    case ColumnGesture::Action::none:
        break;
    case ColumnGesture::Action::collapse:
        collapse();
        break;
    case ColumnGesture::Action::expand:
        expand();
        break;
    case ColumnGesture::Action::throwAway:
        dismiss(found, DismissMotion::slideLeft, RecordUndo::yes);
        break;
    }
}

PreviewWindowController::CardPointer PreviewWindowController::stackCardAt(Point location) const
{
    const auto frontmost = std::find_if(m_cards.rbegin(), m_cards.rend(), [&](const CardPointer &card) {
        return card->variant == PreviewCardVariant::stack && !card->isCovered &&
               card->panel->frame().insetBy(AppConfig::previewCardHitMargin).contains(location);
    });
    return frontmost == m_cards.rend() ? nullptr : *frontmost;
}

} // namespace lumenfold
