#pragma once

#include "platform/screencapture/ScreenCapture.h"
#include "platform/screens/Screens.h"

#include <QCoroTask>

#include <vector>

namespace lumenfold {

/// Takes one still picture of a whole display or of a part of one, without this program's own windows.
///
/// A value without state: copies are interchangeable, calls may overlap, and an object may go while a call of it is
/// still waiting. Throws `ScreenCaptureError`, and `PlatformException` when the framework could not even say what there
/// is to capture. Retries nothing, logs nothing. Main thread.
class ScreenCaptureService {
public:
    /// The collaborators must outlive every call. `ownProcessID` is whose windows stay out of the pictures.
    ScreenCaptureService(ScreenshotManager &manager, const Screens &screens, qint64 ownProcessID);

    /// captureFullScreen() is going to follow within a moment.
    void expectFullScreen() const;

    /// The whole display under the pointer, or the main one when the pointer is on none.
    [[nodiscard]] QCoro::Task<Image> captureFullScreen() const;

    /// The part `rect` (global points) of `on`, whose size in pixels is that of `rect` times the screen's scale. A
    /// screen that the framework does not list is taken for its first display.
    [[nodiscard]] QCoro::Task<Image> capture(Rect rect, Screen on) const;

private:
    [[nodiscard]] QCoro::Task<ShareableContent> shareableContent() const;
    [[nodiscard]] static ShareableDisplay display(const Screen &matching, const ShareableContent &in);
    [[nodiscard]] std::vector<RunningApplication> ownApplications(const ShareableContent &in) const;
    [[nodiscard]] QCoro::Task<Image> capture(ContentFilter filter, StreamConfiguration config) const;

    ScreenshotManager *m_manager;
    const Screens *m_screens;
    qint64 m_ownProcessID;
};

} // namespace lumenfold
