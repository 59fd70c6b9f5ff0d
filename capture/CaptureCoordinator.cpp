#include "capture/CaptureCoordinator.h"

#include "app/actions/ActionHandler.h"
#include "capture/PermissionAlert.h"
#include "capture/ScreenCaptureError.h"
#include "capture/areaselection/AreaSelectionController.h"
#include "cards/PreviewWindowController.h"
#include "editor/EditorWindow.h"
#include "platform/mainqueue/MainQueue.h"

#include <QDebug>
#include <QPointer>

#include <algorithm>
#include <chrono>
#include <utility>

namespace lumenfold {
namespace {

/// From hiding the program's own windows to the capture, so that they have left the screen.
constexpr std::chrono::milliseconds settlingDelay{60};

void logCaptureError(const char *description)
{
    qWarning().noquote().nospace() << "LumenFold capture error: " << description;
}

/// Writes what `error` is to the log; true when it is a missing permission, which is for the user and not for the log.
bool isPermissionDenied(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const ScreenCaptureError &failure) {
        if (failure.kind() == ScreenCaptureError::Case::permissionDenied) {
            return true;
        }
        logCaptureError(failure.what());
    } catch (const std::exception &failure) {
        logCaptureError(failure.what());
    } catch (...) {
        logCaptureError("unknown");
    }
    return false;
}

} // namespace

CaptureCoordinator::CaptureCoordinator(Collaborators collaborators)
    : captureService(collaborators.captureService)
    , areaController(std::move(collaborators.areaController))
    , previewController(std::move(collaborators.previewController))
    , m_lastAreaStore(collaborators.defaults)
    , m_actions(collaborators.actions)
    , m_screens(collaborators.screens)
    , m_queue(collaborators.queue)
    , m_alerts(collaborators.alerts)
    , m_workspace(collaborators.workspace)
    , m_editorWindow(std::move(collaborators.editorWindow))
{
    const LastArea lastArea = m_lastAreaStore.load();
    lastAreaRect = lastArea.rect;
    lastAreaDisplayID = lastArea.displayID;
}

CaptureCoordinator::~CaptureCoordinator() = default;

void CaptureCoordinator::captureFullScreen()
{
    if (m_isCapturing) {
        return;
    }
    m_isCapturing = true;
    captureService.expectFullScreen();
    captureWhenHidden([service = captureService] { return service.captureFullScreen(); });
}

void CaptureCoordinator::captureArea()
{
    if (m_isCapturing) {
        return;
    }
    m_isCapturing = true;
    hide();
    areaController->present([self = QPointer(this)](std::optional<Rect> rect, std::optional<Screen> screen) {
        if (self) {
            self->onSelectionEnded(rect, screen);
        }
    });
}

void CaptureCoordinator::captureLastArea()
{
    if (m_isCapturing) {
        return;
    }
    std::optional<Screen> screen;
    if (lastAreaRect) {
        screen = screenForLastArea(*lastAreaRect, lastAreaDisplayID, m_screens.all());
    }
    if (!screen) {
        captureArea();
        return;
    }
    m_isCapturing = true;
    captureWhenHidden(
        [service = captureService, rect = *lastAreaRect, on = *screen] { return service.capture(rect, on); });
}

void CaptureCoordinator::restorePreviousCards()
{
    previewController->restore();
}

void CaptureCoordinator::persistCards()
{
    previewController->persistManifest();
}

void CaptureCoordinator::undoDismissedCards()
{
    previewController->restoreLastDismissed();
}

void CaptureCoordinator::setUndoAvailabilityHandler(std::function<void(bool available)> handler)
{
    previewController->onUndoAvailabilityChanged = std::move(handler);
}

QCoro::Task<> CaptureCoordinator::captureWhenHidden(Picture takePicture)
{
    const QPointer<CaptureCoordinator> self(this);
    hide();
    co_await m_queue.sleep(settlingDelay);
    if (self) {
        deliver(std::move(takePicture));
    }
}

void CaptureCoordinator::onSelectionEnded(const std::optional<Rect> &rect, const std::optional<Screen> &screen)
{
    if (!rect || !screen) {
        restore();
        m_isCapturing = false;
        return;
    }
    lastAreaRect = rect;
    lastAreaDisplayID = screen->displayID;
    m_lastAreaStore.save(*rect, screen->displayID);

    const std::vector<Screen> screens = m_screens.all();
    if (std::ranges::find(screens, screen->displayID, &Screen::displayID) == screens.end()) {
        // The service would take the first display instead, and that is not what the user has seen and chosen.
        logCaptureError("the screen of the selected area is gone");
        restore();
        m_isCapturing = false;
        return;
    }
    deliver([service = captureService, rect = *rect, on = *screen] { return service.capture(rect, on); });
}

QCoro::Task<> CaptureCoordinator::deliver(Picture takePicture)
{
    const QPointer<CaptureCoordinator> self(this);
    Image image;
    std::exception_ptr error;
    try {
        image = co_await takePicture();
    } catch (...) {
        // The end of the line for whatever a backend may throw: the cards must come back and the next capture must be
        // possible.
        error = std::current_exception();
    }
    if (!self) {
        co_return;
    }
    restore();
    if (error) {
        co_await handle(error);
    } else {
        take(image);
    }
    if (self) {
        m_isCapturing = false;
    }
}

void CaptureCoordinator::take(const Image &image)
{
    try {
        m_actions.copyToClipboard(image);
    } catch (const std::exception &failure) {
        // The card is then the only place where the picture is.
        logCaptureError(failure.what());
    }
    previewController->show(image);
}

QCoro::Task<> CaptureCoordinator::handle(std::exception_ptr error)
{
    if (isPermissionDenied(error)) {
        co_await showPermissionAlert(m_alerts, m_workspace);
    }
}

void CaptureCoordinator::hide()
{
    previewController->setHiddenForCapture(true);
    EditorWindow *const editor = editorWindow();
    didHideEditorForCapture = editor != nullptr && editor->hideForCapture();
}

void CaptureCoordinator::restore()
{
    previewController->setHiddenForCapture(false);
    if (!std::exchange(didHideEditorForCapture, false)) {
        return;
    }
    if (EditorWindow *const editor = editorWindow()) {
        editor->restoreAfterCapture();
    }
}

EditorWindow *CaptureCoordinator::editorWindow() const
{
    return m_editorWindow ? m_editorWindow() : nullptr;
}

} // namespace lumenfold
