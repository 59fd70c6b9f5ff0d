#include "tests/components/screencapture/CaptureTest.h"
#include "tests/components/screencapture/ForeignWindow.h"

#include "tests/support/desktop/DesktopTest.h"
#include "tests/support/desktop/Pictures.h"
#include "tests/support/desktop/TestWindow.h"
#include "tests/support/desktop/Wait.h"

#include <QTimer>

#include <csignal>
#include <optional>

#include <sys/socket.h>

namespace lumenfold::test {
namespace {

/// The process at the other end of the connection.
pid_t serverProcess(const XServer &server)
{
    ucred peer{};
    socklen_t length = sizeof peer;
    const int socket = xcb_get_file_descriptor(server.connection().get());
    return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 ? peer.pid : 0;
}

class RobustnessTest : public CaptureTest {
protected:
    /// Starts a capture and keeps its result.
    QCoro::Task<> begin(const ContentFilter filter, const StreamConfiguration configuration)
    {
        result = co_await manager().captureImage(filter, configuration);
    }

    std::optional<ScreenshotManager::ImageResult> result;
};

TEST_F(RobustnessTest, WindowsThatCloseMeanwhileDoNoHarm)
{
    const QImage known = knownPicture(server().size());
    const TestWindow window{server(), {.frame = QRect(QPoint(0, 0), server().size()), .picture = known}};
    const auto own = showOwnWindow(QRect(200, 150, 400, 300), Qt::red);
    for (int round = 0; round < 20; ++round) {
        auto passing = std::make_unique<ForeignWindow>(
            server(), ForeignWindowOptions{.frame = QRect(300, 200, 100, 100), .colour = 0x00ff00});
        const Screen main = *screens().main();
        result.reset();
        const auto task = begin(filterFor(main), wholeOf(main));
        passing.reset();
        ASSERT_TRUE(waitFor([this] { return result.has_value(); }));
        ASSERT_TRUE(result->has_value());
        // The passing window may or may not be in it; everything else is as it should be.
        QImage picture = (*result)->pixels();
        QImage expected = known;
        for (QImage *image : {&picture, &expected}) {
            for (int y = 200; y < 300; ++y) {
                for (int x = 300; x < 400; ++x) {
                    image->setPixel(x, y, 0);
                }
            }
        }
        EXPECT_TRUE(samePicture(picture, expected));
    }
}

TEST_F(RobustnessTest, TheMainThreadGoesOnWhileTheServerDoesNot)
{
    const Screen main = *screens().main();
    const pid_t process = serverProcess(server());
    ASSERT_GT(process, 0);
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { ++ticks; });
    ::kill(process, SIGSTOP);
    timer.start(std::chrono::milliseconds(5));
    const auto task = begin(filterFor(main), wholeOf(main));
    // Whoever waited for the server here would wait for ever.
    EXPECT_TRUE(waitFor([&] { return ticks >= 40; }));
    EXPECT_FALSE(result.has_value());
    ::kill(process, SIGCONT);
    EXPECT_TRUE(waitFor([this] { return result.has_value(); }));
    ASSERT_TRUE(result.has_value());
    EXPECT_TRUE(result->has_value());
}

TEST_F(RobustnessTest, ACaptureOutlivesTheManager)
{
    const Screen main = *screens().main();
    const auto task = begin(filterFor(main), wholeOf(main));
    destroyManager();
    ASSERT_TRUE(waitFor([this] { return result.has_value(); }));
    ASSERT_FALSE(result->has_value());
    EXPECT_EQ(result->error().code, static_cast<int>(CaptureErrorCode::cancelled));
}

TEST_F(RobustnessTest, ACaptureOutlivesTheConnection)
{
    const Screen main = *screens().main();
    const auto own = showOwnWindow(QRect(0, 0, 200, 200), Qt::red);
    const auto task = begin(filterFor(main), wholeOf(main));
    destroyConnection();
    ASSERT_TRUE(waitFor([this] { return result.has_value(); }));
    EXPECT_FALSE(result->has_value());
}

TEST_F(RobustnessTest, CapturesAtTheSameTimeDoNotDisturbEachOther)
{
    const QImage known = knownPicture(server().size());
    const TestWindow window{server(), {.frame = QRect(QPoint(0, 0), server().size()), .picture = known}};
    const auto own = showOwnWindow(QRect(200, 150, 400, 300), Qt::red);
    const Screen main = *screens().main();
    auto first = manager().captureImage(filterFor(main), wholeOf(main));
    auto second = manager().captureImage(filterFor(main), partOfMain(QRect(100, 100, 300, 300)));
    const auto part = QCoro::waitFor(std::move(second));
    const auto whole = QCoro::waitFor(std::move(first));
    ASSERT_TRUE(part && whole);
    EXPECT_TRUE(samePicture(part->pixels(), known.copy(100, 100, 300, 300)));
    EXPECT_TRUE(samePicture(whole->pixels(), known));
}

} // namespace
} // namespace lumenfold::test
