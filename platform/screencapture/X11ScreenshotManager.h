#pragma once

#include "platform/screencapture/OwnWindowTraces.h"
#include "platform/screencapture/ScreenCapture.h"
#include "platform/screens/X11Screens.h"
#include "platform/x11/X11Connection.h"

#include <memory>

namespace lumenfold {

/// The domain of captures that fail here: never that of a refusal, because X11 refuses nobody.
inline constexpr char captureErrorDomain[] = "org.lumenfold.capture";

enum class CaptureErrorCode {
    /// The display is not connected any more, or was changed while it was read.
    displayGone = 1,
    /// The size asked for is not a picture's.
    invalidSize = 2,
    /// The program is going away.
    cancelled = 3,
};

/// Takes pictures from the X server's root window.
///
/// When this process is among the excluded applications, every place at which a window of its own stands, or may still
/// be fading out, shows what is beneath instead: the contents of the other windows, which the server keeps for us from
/// the moment this object is made (so make it at start-up). Windows of other applications cannot be excluded. Effects
/// of a compositing manager, such as shadows, are missing at those places. The pointer is never in a picture.
class X11ScreenshotManager : public ScreenshotManager {
public:
    /// All must outlive this. Panels tell `traces` when they leave without one.
    X11ScreenshotManager(x11::X11Connection &connection, const X11Screens &screens, OwnWindowTraces &traces);
    ~X11ScreenshotManager() override;

    /// All displays; this process and the owners of the windows that the window manager lists. The request's options
    /// make no difference on X11.
    void expectCapture(DisplayID display) override;
    [[nodiscard]] QCoro::Task<ContentResult> shareableContent(ShareableContentRequest request) override;

    [[nodiscard]] QCoro::Task<ImageResult> captureImage(ContentFilter filter,
                                                        StreamConfiguration configuration) override;

    /// Reads through the socket from now on, as on servers that cannot share memory.
    void avoidSharedMemory();

private:
    struct State;
    struct Plan;
    static QCoro::Task<ContentResult> listContent(std::weak_ptr<State> weak);
    static QCoro::Task<ImageResult> capture(std::weak_ptr<State> weak, ContentFilter filter,
                                            StreamConfiguration configuration);
    static QCoro::Task<tl::expected<QImage, PlatformError>> readPixels(std::weak_ptr<State> weak, Plan plan);
    static QCoro::Task<tl::expected<QImage, PlatformError>> readWithout(std::weak_ptr<State> weak, Plan plan,
                                                                        QRegion own);

    std::shared_ptr<State> m_state;
};

} // namespace lumenfold
