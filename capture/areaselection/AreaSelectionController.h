#pragma once

#include "capture/ScreenCaptureService.h"
#include "capture/areaselection/SnapEdges.h"
#include "platform/geometry/Geometry.h"
#include "platform/screens/Screens.h"

#include <QCoroTask>
#include <QImage>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lumenfold {

class MainQueue;
class Panel;
class PanelFactory;
class SelectionView;
class WindowList;

/// Lets the user drag out a rectangle on any screen: every screen is covered by a dimming overlay until an area has
/// been chosen on one of them or the user has changed his mind. Main thread.
///
/// Screens may come and go meanwhile: each has its overlay as long as it is there. Where windows cannot be translucent
/// (no compositing manager), the overlays show a still picture of their screen, taken before any of them appears.
class AreaSelectionController : public QObject {
    Q_OBJECT

public:
    /// The chosen rectangle in global points and the screen on which it was drawn. Anything but both: cancelled.
    using Completion = std::function<void(std::optional<Rect>, std::optional<Screen>)>;

    /// What the controller works with; the references must outlive it.
    struct Collaborators {
        PanelFactory &panels;
        const Screens &screens;
        const WindowList &windowList;
        MainQueue &queue;
        /// Takes the still pictures.
        ScreenCaptureService captureService;
        /// Whose windows are not snapped to.
        qint64 ownProcessID = 0;
    };

    explicit AreaSelectionController(const Collaborators &collaborators);
    ~AreaSelectionController() override;

    /// Shows the overlays. The completion is called once, later, when they have left the screen again. An earlier
    /// completion that is still waiting is dropped.
    void present(Completion completion);

private:
    struct Overlay {
        Screen screen;
        std::unique_ptr<Panel> panel;
    };

    void finish(std::optional<Rect> rect, std::optional<Screen> screen);
    void discard(std::vector<Overlay> overlays);
    void onScreensChanged();
    QCoro::Task<> coverScreens();
    void dropStaleOverlays();
    [[nodiscard]] std::vector<Screen> uncoveredScreens() const;
    void addOverlay(const Screen &screen, QImage backdrop);
    [[nodiscard]] std::unique_ptr<SelectionView> makeView(const Screen &screen, QImage backdrop);
    [[nodiscard]] SnapEdges snapEdgesOn(const Screen &screen) const;

    PanelFactory &m_panels;
    const Screens &m_screens;
    const WindowList &m_windowList;
    MainQueue &m_queue;
    ScreenCaptureService m_captureService;
    qint64 m_ownProcessID;

    /// One per screen; empty when idle.
    std::vector<Overlay> windows;
    /// None when idle.
    Completion completion;
    /// Off the screen, to be destroyed in a later turn.
    std::vector<Overlay> m_discarded;
    /// coverScreens() is waiting for a picture and will look again when it has it.
    bool m_isCovering = false;
};

} // namespace lumenfold
