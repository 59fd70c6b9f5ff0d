#include "cards/CardPanels.h"

#include "cards/CardSizing.h"
#include "platform/mainqueue/MainQueue.h"

#include <QPointer>
#include <QWidget>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

namespace lumenfold {
namespace {

constexpr std::size_t goingPerTurn = 8;
/// Between two turns, so that the event loop gets to everything else.
constexpr std::chrono::milliseconds goingPause{1};

} // namespace

CardPanels::CardPanels(PanelFactory &factory, MainQueue &queue) : m_factory(factory), m_queue(queue) {}

CardPanels::~CardPanels() = default;

std::unique_ptr<Panel> CardPanels::makePanel(PreviewCardVariant variant, const Rect &frame,
                                             std::unique_ptr<QWidget> view)
{
    const bool isPinned = variant == PreviewCardVariant::pinned;
    auto panel =
        m_factory.makePanel({.constraint = isPinned ? PanelConstraint::unconstrained : PanelConstraint::constrained,
                             .transparentMargin = cardHitMargin(variant),
                             .title = isPinned ? tr("Pinned screenshot") : tr("Screenshot")},
                            frame);
    panel->setContentView(std::move(view));
    return panel;
}

void CardPanels::orderFront(Panel &panel)
{
    if (m_hidden) {
        return;
    }
    panel.orderFrontRegardless();
    std::erase(m_ordered, &panel);
    m_ordered.push_back(&panel);
}

void CardPanels::orderOut(Panel &panel)
{
    panel.orderOut();
    std::erase(m_ordered, &panel);
}

void CardPanels::orderFrontInSequence(const std::vector<Panel *> &backToFront)
{
    const bool standsRight = m_ordered.size() >= backToFront.size() &&
                             std::equal(backToFront.rbegin(), backToFront.rend(), m_ordered.rbegin());
    if (standsRight) {
        return;
    }
    std::ranges::for_each(backToFront, [this](Panel *panel) { orderFront(*panel); });
    for (const Departure &departure : m_departures) {
        if (departure.panel->isVisible()) {
            departure.panel->orderFrontRegardless();
        }
    }
}

void CardPanels::setHidden(bool hidden)
{
    m_hidden = hidden;
    if (!hidden) {
        return;
    }
    for (Panel *panel : std::exchange(m_ordered, {})) {
        panel->orderOut();
    }
    for (const Departure &departure : m_departures) {
        departure.panel->orderOut();
    }
}

void CardPanels::depart(Panel &panel, std::shared_ptr<void> owner, PanelAnimation animation)
{
    std::erase(m_ordered, &panel);
    m_departures.push_back({&panel, std::move(owner)});
    animation.onCompleted = [self = QPointer(this), gone = &panel] {
        gone->orderOut();
        if (self) {
            self->m_queue.post([self, gone] {
                if (self) {
                    self->finishDeparture(gone);
                }
            });
        }
    };
    panel.animate(std::move(animation));
}

void CardPanels::finishDeparture(Panel *panel)
{
    const auto found = std::ranges::find(m_departures, panel, &Departure::panel);
    if (found != m_departures.end()) {
        const Departure departure = std::move(*found);
        m_departures.erase(found);
    }
}

void CardPanels::letGo(std::vector<std::shared_ptr<void>> owners)
{
    std::ranges::move(owners, std::back_inserter(m_leftovers));
    scheduleLettingGo();
}

void CardPanels::scheduleLettingGo()
{
    if (m_leftovers.empty() || std::exchange(m_isLettingGo, true)) {
        return;
    }
    m_queue.after(goingPause, [self = QPointer(this)] {
        if (self) {
            self->m_isLettingGo = false;
            const std::size_t left = self->m_leftovers.size();
            self->m_leftovers.resize(left - std::min(left, goingPerTurn));
            self->scheduleLettingGo();
        }
    });
}

} // namespace lumenfold
