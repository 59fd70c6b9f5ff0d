#include "cards/ColumnPills.h"

#include "cards/CardViewFactory.h"

#include <QWidget>

#include <utility>

namespace lumenfold {
namespace {

/// Around the visible pill, inside its panel.
constexpr double pillPanelPadding = 12;
/// The pointer counts as over a pill this far from its panel.
constexpr double hoverMargin = 14;

std::unique_ptr<Panel> makePanel(PanelFactory &factory, std::unique_ptr<QWidget> view, const QString &title)
{
    if (!view) {
        return nullptr;
    }
    auto panel = factory.makePanel({.transparentMargin = pillPanelPadding, .title = title}, Rect{});
    panel->setContentView(std::move(view));
    return panel;
}

bool mayClearAllBeSeen(const StackState &column)
{
    return !column.isCollapsed && column.count >= 2;
}

} // namespace

ColumnPills::ColumnPills(PanelFactory &panels, CardViewFactory &views, StackControlState &state)
    : m_panels(panels), m_views(views), m_state(state)
{
}

ColumnPills::~ColumnPills() = default;

void ColumnPills::ensurePanels()
{
    if (!m_controlPanel) {
        m_controlPanel = makePanel(m_panels, m_views.makeCollapsePill(m_state), tr("Collapse or expand screenshots"));
    }
    if (!m_clearAllPanel) {
        m_clearAllPanel = makePanel(m_panels, m_views.makeClearAllPill(m_state), tr("Clear screenshots"));
    }
}

void ColumnPills::position(const StackMetrics &metrics, const StackState &column)
{
    if (m_controlPanel) {
        if (const auto frame = collapsePillPanelFrame(metrics, column)) {
            m_controlPanel->setFrame(*frame);
        }
    }
    if (m_clearAllPanel) {
        if (const auto frame = clearAllPillPanelFrame(metrics, column)) {
            m_clearAllPanel->setFrame(*frame);
        } else {
            m_clearAllPanel->orderOut();
        }
    }
}

void ColumnPills::bringToFront(const StackState &column)
{
    if (m_hidden) {
        return;
    }
    if (m_controlPanel) {
        m_controlPanel->orderFrontRegardless();
    }
    if (m_clearAllPanel && mayClearAllBeSeen(column)) {
        m_clearAllPanel->orderFrontRegardless();
    }
}

void ColumnPills::orderOut()
{
    for (Panel *panel : {m_controlPanel.get(), m_clearAllPanel.get()}) {
        if (panel != nullptr) {
            panel->orderOut();
        }
    }
}

void ColumnPills::setHidden(bool hidden)
{
    m_hidden = hidden;
    if (hidden) {
        orderOut();
    }
}

Rect ColumnPills::unitedWith(Rect area) const
{
    for (const Panel *panel : {m_controlPanel.get(), m_clearAllPanel.get()}) {
        if (panel != nullptr) {
            area = area.united(panel->frame().outsetBy(hoverMargin));
        }
    }
    return area;
}

} // namespace lumenfold
