#pragma once

#include "cards/StackGeometry.h"
#include "platform/geometry/Geometry.h"
#include "platform/panels/Panel.h"

#include <QCoreApplication>

#include <memory>
#include <optional>

namespace lumenfold {

class CardViewFactory;
class StackControlState;

/// The panels of the two controls beside the column. Main thread.
class ColumnPills {
    Q_DECLARE_TR_FUNCTIONS(lumenfold::ColumnPills)

public:
    /// Everything must outlive this object.
    ColumnPills(PanelFactory &panels, CardViewFactory &views, StackControlState &state);
    ~ColumnPills();

    /// Makes the panels the first time; hidden. A pill of which nothing can be seen gets none.
    void ensurePanels();

    /// Puts both where that column wants them. A Clear All pill that must not be seen leaves the screen.
    void position(const StackMetrics &metrics, const StackState &column);

    /// Shows the pills that may be seen above everything else; while they are hidden they stay off the screen.
    void bringToFront(const StackState &column);
    void orderOut();
    /// Takes the pills off the screen and keeps them off it, or allows them to be seen again.
    void setHidden(bool hidden);

    /// What counts as the column for the pointer: `area` and the pills with some room around them, seen or not.
    [[nodiscard]] Rect unitedWith(Rect area) const;

private:
    PanelFactory &m_panels;
    CardViewFactory &m_views;
    StackControlState &m_state;
    bool m_hidden = false;
    std::unique_ptr<Panel> m_controlPanel;
    std::unique_ptr<Panel> m_clearAllPanel;
};

} // namespace lumenfold
