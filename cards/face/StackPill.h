#pragma once

#include "platform/panels/PanelContentShape.h"

#include <QAbstractButton>
#include <QSize>

namespace lumenfold {

class Appearance;
class PanelFactory;

/// The look that the controls beside the column share: a capsule with a line along its edge and a shadow. The view
/// fills a panel that is larger than the capsule, which stands in its middle and alone takes presses.
class StackPill : public QAbstractButton, public PanelContentShape {
    Q_OBJECT

public:
    ~StackPill() override;

    [[nodiscard]] QRegion opaqueShape(double scale) const override;
    [[nodiscard]] QSize sizeHint() const override;

protected:
    /// `pillSize` in points. The appearance and the panels must outlive the view.
    StackPill(QSize pillSize, const Appearance &appearance, const PanelFactory &panels);

    /// Paints what stands on the capsule.
    virtual void paintLabel(QPainter &painter, const QRectF &capsule, const QColor &color) = 0;

    [[nodiscard]] bool hitButton(const QPoint &position) const override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QRectF capsule() const;

    const QSize m_pillSize;
    const Appearance &m_appearance;
    const PanelFactory &m_panels;
};

} // namespace lumenfold
