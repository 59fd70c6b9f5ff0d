#include "tests/support/fakes/FakeScreenshotManager.h"

#include <utility>

namespace lumenfold::test {

struct FakeScreenshotManager::UntilReleased {
    FakeScreenshotManager &manager;

    [[nodiscard]] bool await_ready() const noexcept { return !manager.m_isHolding; }
    void await_suspend(std::coroutine_handle<> waiting) const { manager.m_waiting.push_back(waiting); }
    void await_resume() const noexcept {}
};

FakeScreenshotManager::FakeScreenshotManager()
    : content(ShareableContent{.displays = {{.displayID = 1, .width = 1440, .height = 900}}})
    , image([](const Capture &capture) -> ImageResult {
        QImage pixels(capture.configuration.width, capture.configuration.height, QImage::Format_RGB32);
        pixels.fill(Qt::darkCyan);
        return Image::fromPixels(pixels);
    })
{
}

QCoro::Task<ScreenshotManager::ContentResult> FakeScreenshotManager::shareableContent(ShareableContentRequest request)
{
    contentRequests.push_back(request);
    if (onCall) {
        onCall(QStringLiteral("content"));
    }
    co_await untilReleased();
    co_return ContentResult(content); // a copy: what is returned by name is moved from
}

QCoro::Task<ScreenshotManager::ImageResult> FakeScreenshotManager::captureImage(ContentFilter filter,
                                                                                StreamConfiguration configuration)
{
    const Capture capture{.filter = std::move(filter), .configuration = configuration};
    captures.push_back(capture);
    if (onCall) {
        onCall(QStringLiteral("capture"));
    }
    co_await untilReleased();
    co_return image(capture);
}

bool FakeScreenshotManager::release()
{
    if (m_waiting.empty()) {
        return false;
    }
    const std::coroutine_handle<> waiting = m_waiting.front();
    m_waiting.pop_front();
    waiting.resume();
    return true;
}

void FakeScreenshotManager::releaseAll()
{
    m_isHolding = false;
    while (release()) {
    }
}

FakeScreenshotManager::UntilReleased FakeScreenshotManager::untilReleased()
{
    return {*this};
}

} // namespace lumenfold::test
