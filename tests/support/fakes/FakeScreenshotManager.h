#pragma once

#include "platform/screencapture/ScreenCapture.h"

#include <coroutine>
#include <deque>
#include <functional>
#include <vector>

namespace lumenfold::test {

/// Takes no pictures: answers what the test has put into `content` and `image`, and remembers what was asked. Answers
/// at once, or, while it holds, when the test lets go; a test lets go of everything that waits.
class FakeScreenshotManager : public ScreenshotManager {
public:
    /// What was asked for as one picture.
    struct Capture {
        ContentFilter filter;
        StreamConfiguration configuration;
    };

    /// Lists one display (id 1) of 1440 x 900 points and makes pictures of one colour in the size asked for.
    FakeScreenshotManager();

    void expectCapture(DisplayID display) override { expected.push_back(display); }
    [[nodiscard]] QCoro::Task<ContentResult> shareableContent(ShareableContentRequest request) override;
    [[nodiscard]] QCoro::Task<ImageResult> captureImage(ContentFilter filter,
                                                        StreamConfiguration configuration) override;

    /// From now on every request waits for release().
    void hold() { m_isHolding = true; }
    /// Answers the request that has waited longest, with what stands in `content` or `image` by then; false when none
    /// waits.
    bool release();
    /// Holds no more and answers all.
    void releaseAll();
    [[nodiscard]] int waitingCount() const { return static_cast<int>(m_waiting.size()); }

    ContentResult content;
    std::function<ImageResult(const Capture &)> image;

    std::vector<DisplayID> expected;
    std::vector<ShareableContentRequest> contentRequests;
    std::vector<Capture> captures;
    /// Told of each request as it comes in ("content", "capture"), for tests of the order among several fakes.
    std::function<void(const QString &)> onCall;

private:
    struct UntilReleased;
    [[nodiscard]] UntilReleased untilReleased();

    bool m_isHolding = false;
    std::deque<std::coroutine_handle<>> m_waiting;
};

} // namespace lumenfold::test
