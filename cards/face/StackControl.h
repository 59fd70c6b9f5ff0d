#pragma once

#include "cards/face/StackPill.h"

#include <memory>

namespace lumenfold {

class StackControlState;

/// Collapses the column or expands it again.
class StackControlButton : public StackPill {
    Q_OBJECT

public:
    /// The appearance and the panels must outlive the view.
    StackControlButton(StackControlState &state, const Appearance &appearance, const PanelFactory &panels);
    ~StackControlButton() override;

protected:
    [[nodiscard]] QSize pillSize() const override;
    void paintLabel(QPainter &painter, const QRectF &capsule, const QColor &color) override;

private:
    void showState();

    StackControlState &m_state;
};

/// Clears the column.
class ClearAllButton : public StackPill {
    Q_OBJECT

public:
    /// The appearance and the panels must outlive the view.
    ClearAllButton(StackControlState &state, const Appearance &appearance, const PanelFactory &panels);
    ~ClearAllButton() override;

protected:
    [[nodiscard]] QSize pillSize() const override;
    void paintLabel(QPainter &painter, const QRectF &capsule, const QColor &color) override;

private:
    StackControlState &m_state;
};

} // namespace lumenfold
