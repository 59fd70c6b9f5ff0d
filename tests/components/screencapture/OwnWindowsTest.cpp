#include "tests/components/screencapture/CaptureTest.h"
#include "tests/components/screencapture/ForeignWindow.h"

#include "tests/support/desktop/DesktopTest.h"
#include "tests/support/desktop/Pictures.h"
#include "tests/support/desktop/Session.h"
#include "tests/support/desktop/TestWindow.h"
#include "tests/support/desktop/Wait.h"

#include <QElapsedTimer>
#include <QWindow>

#include <ostream>

namespace lumenfold::test {

void PrintTo(CompositorKind kind, std::ostream *out)
{
    *out << (kind == CompositorKind::none ? "none" : kind == CompositorKind::plain ? "plain" : "fading");
}

namespace {

/// A window of another program with a known picture beneath everything, with and without a compositing manager.
class OwnWindowsTest : public CaptureTest, public ::testing::WithParamInterface<CompositorKind> {
protected:
    OwnWindowsTest()
    {
        if (isComposited()) {
            waitForBlending(server());
        }
        // The compositing manager shows the window at last, however it makes it appear.
        EXPECT_TRUE(waitFor([&] { return differingPixels(rootPicture(server().connection()), known) == 0; }));
    }

    [[nodiscard]] bool isComposited() const { return GetParam() != CompositorKind::none; }

    const QImage known = knownPicture(server().size());
    const QRect place{320, 240, 300, 200};
    const Compositor compositor{server(), GetParam()};
    const TestWindow window{server(), {.frame = QRect(QPoint(0, 0), server().size()), .picture = known}};
};

TEST_P(OwnWindowsTest, AreLeftOutWhileTheyStand)
{
    const auto own = showOwnWindow(place, Qt::red);
    EXPECT_TRUE(samePicture(takeMain(), known));
    const QRect part = place.adjusted(-20, -10, -150, 10);
    EXPECT_TRUE(samePicture(takePartOfMain(part), known.copy(part)));
}

TEST_P(OwnWindowsTest, AreLeftOutWithoutSharedMemory)
{
    manager().avoidSharedMemory();
    const auto own = showOwnWindow(place, Qt::red);
    EXPECT_TRUE(samePicture(takeMain(), known));
}

TEST_P(OwnWindowsTest, AreLeftOutAtTheScreensEdgesAndOverEachOther)
{
    const auto corner = showOwnWindow(QRect(-40, -40, 100, 100), Qt::red);
    const auto far = showOwnWindow(QRect(1200, 760, 200, 200), Qt::green);
    const auto lower = showOwnWindow(place, Qt::blue);
    const auto upper = showOwnWindow(place.translated(50, 60), Qt::yellow);
    EXPECT_TRUE(samePicture(takeMain(), known));
}

TEST_P(OwnWindowsTest, AreLeftOutWhileTheyMove)
{
    const auto own = showOwnWindow(place, Qt::red);
    for (int step = 1; step <= 10; ++step) {
        own->move(own->pos() + QPoint(12, 8));
        EXPECT_TRUE(samePicture(takeMain(), known)) << "step " << step;
    }
}

TEST_P(OwnWindowsTest, AreLeftOutRightAfterTheyWereHidden)
{
    auto own = showOwnWindow(place, Qt::red);
    own->hide();
    EXPECT_TRUE(samePicture(takeMain(), known));
    own->show();
    own.reset();
    EXPECT_TRUE(samePicture(takeMain(), known));
}

TEST_P(OwnWindowsTest, AreLeftOutRightAfterTheyWereShown)
{
    // The toolkit has sent the request, but nobody has seen the window yet.
    const auto own = showOwnWindow(place, Qt::red);
    for (int round = 0; round < 20; ++round) {
        own->hide();
        ASSERT_TRUE(waitFor([&] { return traces().standing().empty(); }));
        own->show();
        ASSERT_TRUE(samePicture(takeMain(), known)) << "round " << round;
        // The toolkit takes news of this mapping that comes after hide() for another one.
        ASSERT_TRUE(waitFor([&] { return own->windowHandle()->isExposed(); }));
    }
}

TEST_P(OwnWindowsTest, AreLeftOutAllTheWayOfAFadeOut)
{
    const QRect around = place.adjusted(-60, -60, 60, 60);
    const QImage beneath = known.copy(around);
    const auto own = showOwnWindow(place, Qt::red);
    own->hide();
    int screenStillShowedIt = 0;
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < 1500) {
        const bool isShown = differingPixels(rootPicture(server().connection(), around), beneath) != 0;
        ASSERT_TRUE(samePicture(takePartOfMain(around), beneath)) << "after " << time.elapsed() << " ms";
        screenStillShowedIt += isShown ? 1 : 0;
    }
    if (GetParam() == CompositorKind::fading) {
        EXPECT_GT(screenStillShowedIt, 0) << "nothing faded, so nothing was tested";
    }
}

TEST_P(OwnWindowsTest, ShowWhatChangedBeneathThem)
{
    const auto own = showOwnWindow(place, Qt::red);
    const QImage other = knownPicture(server().size(), 5);
    TestWindow changing{server(), {.frame = QRect(QPoint(0, 0), server().size()), .picture = known}};
    own->raise();
    changing.setPicture(other);
    const QRect uncovered(0, 0, 100, 100);
    ASSERT_TRUE(waitFor(
        [&] { return differingPixels(rootPicture(server().connection(), uncovered), other.copy(uncovered)) == 0; }));
    EXPECT_TRUE(samePicture(takeMain(), other));
}

TEST_P(OwnWindowsTest, AreNotRebuiltWhenTheyLeftWithoutATrace)
{
    const auto own = showOwnWindow(place, Qt::red);
    traces().leftWithoutTrace(static_cast<xcb_window_t>(own->winId()));
    own->hide();
    ASSERT_TRUE(waitFor([&] { return traces().standing().empty(); }));
    EXPECT_TRUE(traces().suspectRegion(OwnWindowTraces::Clock::now(), 0).isEmpty());
    if (!isComposited()) {
        EXPECT_TRUE(samePicture(takeMain(), known));
    }
}

TEST_P(OwnWindowsTest, AreLeftOutWithTheFrameThatAWindowManagerGaveThem)
{
    const WindowManager windowManager(server(), WindowManagerKind::openbox);
    QWidget own;
    own.setWindowTitle(QStringLiteral("Settings"));
    own.setPalette(QPalette(Qt::red));
    own.setGeometry(100, 100, 200, 150);
    own.show();
    ASSERT_TRUE(waitFor([&] {
        const QImage screen = rootPicture(server().connection());
        int red = 0;
        for (int y = 0; y < screen.height(); y += 10) {
            for (int x = 0; x < screen.width(); x += 10) {
                red += screen.pixelColor(x, y) == QColor(Qt::red) ? 1 : 0;
            }
        }
        return red > 100;
    }));
    EXPECT_TRUE(samePicture(takeMain(), known));
    own.hide();
    EXPECT_TRUE(samePicture(takeMain(), known));
}

TEST_P(OwnWindowsTest, AreLeftOutWhenTheyWereThereBeforeTheCamera)
{
    const auto own = showOwnWindow(place, Qt::red);
    const auto connection = x11::X11Connection::open();
    const X11Screens someScreens(*connection);
    OwnWindowTraces someTraces;
    X11ScreenshotManager late(*connection, someScreens, someTraces);
    const Screen main = *someScreens.main();
    const auto picture = QCoro::waitFor(late.captureImage(filterFor(main), wholeOf(main)));
    ASSERT_TRUE(picture);
    EXPECT_TRUE(samePicture(picture->pixels(), known));
}

INSTANTIATE_TEST_SUITE_P(Compositors, OwnWindowsTest,
                         ::testing::Values(CompositorKind::none, CompositorKind::plain, CompositorKind::fading),
                         ::testing::PrintToStringParamName());

} // namespace
} // namespace lumenfold::test
