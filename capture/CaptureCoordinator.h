#pragma once

#include "capture/LastAreaStore.h"
#include "capture/ScreenCaptureService.h"
#include "platform/geometry/Geometry.h"
#include "platform/image/Image.h"
#include "platform/screens/Screens.h"

#include <QCoroTask>
#include <QObject>

#include <exception>
#include <functional>
#include <memory>
#include <optional>

namespace lumenfold {

class ActionHandler;
class Alerts;
class AreaSelectionController;
class EditorWindow;
class MainQueue;
class PreviewWindowController;
class Workspace;

/// Runs captures from start to finish, one at a time: hides what the program itself shows, lets the user choose an area
/// where the kind of capture wants one, takes the picture, and puts it on the clipboard and on the card stack.
/// Remembers the last area. What fails is told to the user (a missing permission) or to the log (everything else); no
/// exception leaves this class. One for the whole program; main thread.
class CaptureCoordinator : public QObject {
    Q_OBJECT

public:
    struct Collaborators {
        ScreenCaptureService captureService;
        std::unique_ptr<AreaSelectionController> areaController;
        std::unique_ptr<PreviewWindowController> previewController;
        /// The references must outlive the coordinator and every capture that it has begun.
        ActionHandler &actions;
        const Screens &screens;
        UserDefaults &defaults;
        MainQueue &queue;
        Alerts &alerts;
        Workspace &workspace;
        /// Asked before and after each capture; empty, or answers null, while there is no editor window.
        std::function<EditorWindow *()> editorWindow;
    };

    /// Loads the last area; a stored display number that is none ends the program (see LastAreaStore).
    explicit CaptureCoordinator(Collaborators collaborators);
    ~CaptureCoordinator() override;

    /// Each begins a capture and returns at once, or does nothing while one is running.
    void captureFullScreen();
    void captureArea();
    /// Lets the user choose an area when none is known, or when the screen it was on is not there.
    void captureLastArea();

    /// True from the start of a capture until its result has been handled, also while an alert about it is up.
    [[nodiscard]] bool isCapturing() const { return m_isCapturing; }

    void restorePreviousCards();
    void persistCards();
    void undoDismissedCards();
    /// Told whether a dismissal can be undone, whenever that changes. Replaces any earlier handler.
    void setUndoAvailabilityHandler(std::function<void(bool available)> handler);

private:
    using Picture = std::function<QCoro::Task<Image>()>;

    QCoro::Task<> captureWhenHidden(Picture takePicture);
    void onSelectionEnded(const std::optional<Rect> &rect, const std::optional<Screen> &screen);
    QCoro::Task<> deliver(Picture takePicture);
    void take(const Image &image);
    QCoro::Task<> handle(std::exception_ptr error);
    void hide();
    void restore();
    [[nodiscard]] EditorWindow *editorWindow() const;

    ScreenCaptureService captureService;
    std::unique_ptr<AreaSelectionController> areaController;
    std::unique_ptr<PreviewWindowController> previewController;
    bool m_isCapturing = false;
    bool didHideEditorForCapture = false;
    /// Global points.
    std::optional<Rect> lastAreaRect;
    std::optional<DisplayID> lastAreaDisplayID;

    LastAreaStore m_lastAreaStore;
    ActionHandler &m_actions;
    const Screens &m_screens;
    MainQueue &m_queue;
    Alerts &m_alerts;
    Workspace &m_workspace;
    std::function<EditorWindow *()> m_editorWindow;
};

} // namespace lumenfold
