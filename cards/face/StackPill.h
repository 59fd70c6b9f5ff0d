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
    /// The appearance and the panels must outlive the view.
    StackPill(const Appearance &appearance, const PanelFactory &panels);

    /// Of the capsule, in points. Not asked for before the view is shown or measured.
    [[nodiscard]] virtual QSize pillSize() const = 0;

    /// Paints what stands on the capsule.
    virtual void paintLabel(QPainter &painter, const QRectF &capsule, const QColor &color) = 0;

    [[nodiscard]] bool hitButton(const QPoint &position) const override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QRectF capsule() const;

    const Appearance &m_appearance;
    const PanelFactory &m_panels;
};

} // namespace lumenfold
