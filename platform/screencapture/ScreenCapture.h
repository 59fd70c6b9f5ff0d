#pragma once

#include "platform/PlatformError.h"
#include "platform/geometry/Geometry.h"
#include "platform/image/Image.h"
#include "platform/screens/Screens.h"

#include <QCoroTask>

#include <tl/expected.hpp>

#include <optional>
#include <vector>

namespace lumenfold {

/// The error domain of a capture that the system refuses (no permission to see the screen).
inline constexpr char streamErrorDomain[] = "com.apple.ScreenCaptureKit.SCStreamErrorDomain";

/// A display as the capture framework lists it; its size is in points.
struct ShareableDisplay {
    DisplayID displayID = 0;
    double width = 0;
    double height = 0;

    friend bool operator==(const ShareableDisplay &, const ShareableDisplay &) = default;
};

/// A program with windows that may be in a picture.
struct RunningApplication {
    qint64 processID = 0;

    friend bool operator==(const RunningApplication &, const RunningApplication &) = default;
};

/// What can be captured at this moment.
struct ShareableContent {
    std::vector<ShareableDisplay> displays;
    std::vector<RunningApplication> applications;

    friend bool operator==(const ShareableContent &, const ShareableContent &) = default;
};

enum class DesktopWindows { include, exclude };
enum class WindowVisibility { any, onScreenOnly };

struct ShareableContentRequest {
    DesktopWindows desktopWindows = DesktopWindows::include;
    WindowVisibility visibility = WindowVisibility::onScreenOnly;

    friend bool operator==(const ShareableContentRequest &, const ShareableContentRequest &) = default;
};

/// One display, without the windows of the listed applications.
struct ContentFilter {
    ShareableDisplay display;
    std::vector<RunningApplication> excludingApplications;

    friend bool operator==(const ContentFilter &, const ContentFilter &) = default;
};

struct StreamConfiguration {
    /// In the captured display's own space: points, origin at the display's TOP left, y downwards. Nothing: all of it.
    std::optional<Rect> sourceRect;
    /// The size of the picture in pixels. The picture is scaled only when the source has another size.
    int width = 0;
    int height = 0;
    bool showsCursor = true;
    bool capturesAudio = true;

    friend bool operator==(const StreamConfiguration &, const StreamConfiguration &) = default;
};

/// Takes still pictures of displays. Asynchronous also where the platform answers at once, because on other platforms
/// it asks a service, and the service may ask the user.
class ScreenshotManager {
public:
    ScreenshotManager() = default;
    ScreenshotManager(const ScreenshotManager &) = delete;
    ScreenshotManager &operator=(const ScreenshotManager &) = delete;
    virtual ~ScreenshotManager() = default;

    using ContentResult = tl::expected<ShareableContent, PlatformError>;
    using ImageResult = tl::expected<Image, PlatformError>;

    /// One picture of the whole display is going to be asked for within a moment: what takes time may be made ready.
    virtual void expectCapture(DisplayID display) = 0;

    [[nodiscard]] virtual QCoro::Task<ContentResult> shareableContent(ShareableContentRequest request) = 0;

    /// One picture. Its pixels are complete when the task ends; its PNG bytes are there as well, or are being made when
    /// they take long.
    [[nodiscard]] virtual QCoro::Task<ImageResult> captureImage(ContentFilter filter,
                                                                StreamConfiguration configuration) = 0;
};

} // namespace lumenfold
