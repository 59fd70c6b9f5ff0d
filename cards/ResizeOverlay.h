#pragma once

#include "cards/PreviewCardVariant.h"
#include "cards/ResizeHotCorner.h"
#include "cards/ScreenDrag.h"
#include "platform/geometry/Geometry.h"

#include <QRegion>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lumenfold {

class EventMonitor;
class EventMonitors;

/// Where a card is taken hold of, and who is told of a resize drag: began, any number of changes, ended, in this order;
/// each may be empty.
struct ResizeOverlay {
    /// The width of the band around the card in which it is resized, in points. Carried for the view's users; the zones
    /// decide.
    double band = 18;
    ResizeZones zones;
    std::function<void(PreviewResizeCorner corner)> onBegan;
    /// The whole way of the pointer since the press, in points, y upwards.
    std::function<void(PreviewResizeCorner corner, Size translation)> onChanged;
    /// Also when the drag is cut short because the view goes off the screen.
    std::function<void()> onEnded;
};

/// Lies on a whole card panel and takes the presses in its hot corners; all others go to what lies beneath. Shows the
/// resize cursor over a hot corner. Resizes nothing itself.
class ResizeOverlayView : public QWidget {
    Q_OBJECT

public:
    /// Both must outlive the view. The monitors are used while the view is on screen.
    ResizeOverlayView(const Screens &screens, EventMonitors &monitors, QWidget *parent = nullptr);
    ~ResizeOverlayView() override;

    void apply(ResizeOverlay overlay);

    /// The hot corners in the view's coordinates: what of the panel must get the pointer beside the card.
    [[nodiscard]] QRegion hotRegion() const;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    [[nodiscard]] std::optional<PreviewResizeCorner> cornerAt(QPointF position) const;
    void takeOnlyHotCorners();
    void pointerMoved();
    void refreshCursorFromScreen();
    void showCursorFor(PreviewResizeCorner corner);
    void endDrag();

    EventMonitors &m_eventMonitors;
    ResizeOverlay m_overlay;
    ScreenDrag m_drag;
    /// While a drag goes on.
    PreviewResizeCorner m_corner = PreviewResizeCorner::topLeft;
    /// This view set the cursor last, so that it owes an arrow.
    bool m_didSetResizeCursor = false;
    std::vector<std::unique_ptr<EventMonitor>> m_installed;
};

} // namespace lumenfold
