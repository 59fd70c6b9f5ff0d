#pragma once

#include "cards/ScreenDrag.h"
#include "platform/geometry/Geometry.h"

#include <QWidget>

#include <functional>
#include <utility>

namespace lumenfold {

/// Told of a move drag: began, any number of changes, ended, in this order; each may be empty.
struct PanOverlay {
    std::function<void()> onBegan;
    /// The whole way since the press, in points, y upwards.
    std::function<void(Size translation)> onChanged;
    /// Also when the drag is cut short because the view goes off the screen.
    std::function<void()> onEnded;
    /// The second press of a double click; a drag may follow from it as from any other press.
    std::function<void()> onDoubleClick;
};

/// Lies on a pinned card, takes every press on it, and reports how it is dragged. Paints and moves nothing itself.
class PanOverlayView : public QWidget {
    Q_OBJECT

public:
    /// `screens` must outlive the view.
    explicit PanOverlayView(const Screens &screens, QWidget *parent = nullptr);
    ~PanOverlayView() override;

    void apply(PanOverlay overlay) { m_overlay = std::move(overlay); }

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void endDrag();

    PanOverlay m_overlay;
    ScreenDrag m_drag;
};

} // namespace lumenfold
