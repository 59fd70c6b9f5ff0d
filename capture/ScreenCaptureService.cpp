#include "capture/ScreenCaptureService.h"

#include "capture/CaptureGeometry.h"
#include "capture/PlatformException.h"
#include "capture/ScreenCaptureError.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace lumenfold {

ScreenCaptureService::ScreenCaptureService(ScreenshotManager &manager, const Screens &screens, qint64 ownProcessID)
    : m_manager(&manager), m_screens(&screens), m_ownProcessID(ownProcessID)
{
}

void ScreenCaptureService::expectFullScreen() const
{
    const std::optional<Screen> underPointer = m_screens->screenWithMouse();
    if (const std::optional<Screen> screen = underPointer ? underPointer : m_screens->main()) {
        m_manager->expectCapture(screen->displayID);
    }
}

QCoro::Task<Image> ScreenCaptureService::captureFullScreen() const
{
    const ScreenCaptureService self = *this; // this object may be gone after a suspension
    const ShareableContent content = co_await self.shareableContent();

    std::optional<Screen> screen = self.m_screens->screenWithMouse();
    const std::optional<Screen> mainScreen = self.m_screens->main();
    if (!screen) {
        screen = mainScreen;
    }
    if (!screen) {
        throw ScreenCaptureError::noDisplays();
    }

    const ShareableDisplay target = display(*screen, content);
    const PixelSize output = fullScreenOutputSize(target, mainScreen);
    ContentFilter filter{.display = target, .excludingApplications = self.ownApplications(content)};
    StreamConfiguration config{.sourceRect = std::nullopt,
                               .width = output.width,
                               .height = output.height,
                               .showsCursor = false,
                               .capturesAudio = false};
    co_return co_await self.capture(std::move(filter), std::move(config));
}

QCoro::Task<Image> ScreenCaptureService::capture(Rect rect, Screen on) const
{
    const ScreenCaptureService self = *this;
    const ShareableContent content = co_await self.shareableContent();

    const PixelSize output = areaOutputSize(rect.size(), on.backingScale);
    ContentFilter filter{.display = display(on, content), .excludingApplications = self.ownApplications(content)};
    StreamConfiguration config{.sourceRect = sourceRect(rect, on.frame),
                               .width = output.width,
                               .height = output.height,
                               .showsCursor = false,
                               .capturesAudio = false};
    co_return co_await self.capture(std::move(filter), std::move(config));
}

QCoro::Task<ShareableContent> ScreenCaptureService::shareableContent() const
{
    const ShareableContentRequest request{.desktopWindows = DesktopWindows::include,
                                          .visibility = WindowVisibility::onScreenOnly};
    ScreenshotManager::ContentResult content = co_await m_manager->shareableContent(request);
    if (!content) {
        throw PlatformException(std::move(content).error());
    }
    co_return std::move(*content);
}

ShareableDisplay ScreenCaptureService::display(const Screen &matching, const ShareableContent &in)
{
    if (in.displays.empty()) {
        throw ScreenCaptureError::noDisplays();
    }
    const auto found = std::ranges::find(in.displays, matching.displayID, &ShareableDisplay::displayID);
    return found != in.displays.end() ? *found : in.displays.front();
}

std::vector<RunningApplication> ScreenCaptureService::ownApplications(const ShareableContent &in) const
{
    std::vector<RunningApplication> own;
    std::ranges::copy_if(in.applications, std::back_inserter(own), [this](const RunningApplication &application) {
        return application.processID == m_ownProcessID;
    });
    return own;
}

QCoro::Task<Image> ScreenCaptureService::capture(ContentFilter filter, StreamConfiguration config) const
{
    ScreenshotManager::ImageResult image = co_await m_manager->captureImage(std::move(filter), std::move(config));
    if (!image) {
        PlatformError error = std::move(image).error();
        // Every failure of that domain is, in practice, a missing permission.
        if (error.domain == QLatin1String(streamErrorDomain)) {
            throw ScreenCaptureError::permissionDenied();
        }
        throw ScreenCaptureError::captureFailed(std::move(error));
    }
    if (image->isNull()) {
        throw ScreenCaptureError::captureFailed(
            {.domain = QStringLiteral("LumenFold"), .description = QStringLiteral("the picture is empty")});
    }
    co_return std::move(*image);
}

} // namespace lumenfold
