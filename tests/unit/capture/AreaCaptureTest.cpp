/// Captures of an area that is chosen, and of the last one.
#include "tests/support/unit/LogWatch.h"
#include "tests/unit/capture/CaptureCoordinatorFixture.h"

#include <gmock/gmock.h>

#include <limits>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using AreaCaptureTest = CaptureCoordinatorTest;

TEST_F(AreaCaptureTest, TheSelectorIsShownOnceHoweverOftenTheKeyIsPressed)
{
    coordinator->captureArea();
    coordinator->captureArea();
    coordinator->captureLastArea();
    coordinator->captureFullScreen();
    queue.advance(1s);
    EXPECT_THAT(overlays(), SizeIs(1));
    EXPECT_THAT(manager.captures, IsEmpty());
    EXPECT_TRUE(coordinator->isCapturing());
}

TEST_F(AreaCaptureTest, AnAreaIsCapturedAsSoonAsTheOverlaysHaveGone)
{
    coordinator->captureArea();
    select({100, 200}, {400, 450});
    EXPECT_THAT(manager.captures, IsEmpty());
    queue.advance(50ms);
    ASSERT_THAT(manager.captures, SizeIs(1));
    EXPECT_EQ(manager.captures[0].configuration.sourceRect, (Rect{100, 450, 300, 250}));
    EXPECT_EQ(cardCount(), 1U);
    EXPECT_THAT(pasteboard.images, SizeIs(1));
    EXPECT_FALSE(coordinator->isCapturing());
}

TEST_F(AreaCaptureTest, AnAreaIsRememberedBeforeItIsCaptured)
{
    screens.setScreens({left, right});
    manager.hold();
    coordinator->captureArea();
    select({100, 200}, {400, 450}, 1);
    queue.advance(50ms);
    EXPECT_EQ(defaults.numbers(QStringLiteral("LumenFold.lastAreaRect")), (std::vector<double>{1540, 200, 300, 250}));
    EXPECT_EQ(defaults.integer(QStringLiteral("LumenFold.lastAreaDisplayID")), 2);
    manager.releaseAll();
}

TEST_F(AreaCaptureTest, AnAreaIsRememberedAlsoWhenItsCaptureFails)
{
    failCapturesWith(QStringLiteral("X11"));
    expectLogLine(QStringLiteral("LumenFold capture error: captureFailed: it broke (X11, code 5)"));
    coordinator->captureArea();
    select({100, 200}, {400, 450});
    queue.advance(50ms);
    EXPECT_EQ(defaults.numbers(QStringLiteral("LumenFold.lastAreaRect")), (std::vector<double>{100, 200, 300, 250}));
    EXPECT_FALSE(coordinator->isCapturing());
}

TEST_F(AreaCaptureTest, ACancelledSelectionLeavesTheLastAreaAndTheClipboardAlone)
{
    coordinator->captureArea();
    select({100, 200}, {400, 450});
    queue.advance(1s);
    const QStringList writes = defaults.writes();
    const auto calls = pasteboard.calls.size();

    for (const bool byEscape : {true, false}) {
        coordinator->captureArea();
        EXPECT_EQ(visibleCards(), 0U);
        if (byEscape) {
            pressEscape();
        } else {
            select({100, 200}, {100, 200});
        }
        queue.advance(1s);
        EXPECT_FALSE(coordinator->isCapturing());
        EXPECT_EQ(visibleCards(), 1U);
    }
    EXPECT_EQ(defaults.writes(), writes);
    EXPECT_EQ(pasteboard.calls.size(), calls);

    coordinator->captureLastArea();
    queue.advance(60ms);
    EXPECT_EQ(manager.captures.back().configuration.sourceRect, (Rect{100, 450, 300, 250}));
}

TEST_F(AreaCaptureTest, TheLastAreaIsTakenWithoutTheSelector)
{
    defaults.setNumbers(QStringLiteral("LumenFold.lastAreaRect"), {1540, 200, 300, 250});
    defaults.setInteger(QStringLiteral("LumenFold.lastAreaDisplayID"), 2);
    const QStringList writes = defaults.writes();
    makeCoordinator();
    screens.setScreens({left, right});
    coordinator->captureLastArea();
    EXPECT_TRUE(coordinator->isCapturing());
    EXPECT_THAT(overlays(), IsEmpty());
    queue.advance(59ms);
    EXPECT_THAT(manager.captures, IsEmpty());
    queue.advance(1ms);
    ASSERT_THAT(manager.captures, SizeIs(1));
    EXPECT_EQ(manager.captures[0].filter.display.displayID, 2U);
    EXPECT_EQ(manager.captures[0].configuration.sourceRect, (Rect{100, 630, 300, 250}));
    EXPECT_EQ(cardCount(), 1U);
    EXPECT_EQ(defaults.writes(), writes);
}

TEST_F(AreaCaptureTest, TheLastAreaIsTakenAsItIsAlsoBeyondTheScreen)
{
    defaults.setNumbers(QStringLiteral("LumenFold.lastAreaRect"), {1400, 850, 300, 250});
    defaults.setInteger(QStringLiteral("LumenFold.lastAreaDisplayID"), 1);
    makeCoordinator();
    coordinator->captureLastArea();
    queue.advance(60ms);
    ASSERT_THAT(manager.captures, SizeIs(1));
    EXPECT_EQ(manager.captures[0].configuration.sourceRect, (Rect{1400, -200, 300, 250}));
}

TEST_F(AreaCaptureTest, TheLastAreaOfAnUnpluggedScreenIsTakenWhereItsCentreIs)
{
    defaults.setNumbers(QStringLiteral("LumenFold.lastAreaRect"), {100, 200, 300, 250});
    defaults.setInteger(QStringLiteral("LumenFold.lastAreaDisplayID"), 77);
    makeCoordinator();
    coordinator->captureLastArea();
    queue.advance(60ms);
    ASSERT_THAT(manager.captures, SizeIs(1));
    EXPECT_EQ(manager.captures[0].filter.display.displayID, 1U);
}

TEST_F(AreaCaptureTest, TheLastAreaOutsideEveryScreenIsChosenAnew)
{
    defaults.setNumbers(QStringLiteral("LumenFold.lastAreaRect"), {5000, 200, 300, 250});
    defaults.setInteger(QStringLiteral("LumenFold.lastAreaDisplayID"), 77);
    makeCoordinator();
    coordinator->captureLastArea();
    EXPECT_THAT(overlays(), SizeIs(1));
    select({10, 20}, {110, 220});
    queue.advance(50ms);
    EXPECT_EQ(defaults.numbers(QStringLiteral("LumenFold.lastAreaRect")), (std::vector<double>{10, 20, 100, 200}));
    EXPECT_EQ(defaults.integer(QStringLiteral("LumenFold.lastAreaDisplayID")), 1);
}

TEST_F(AreaCaptureTest, WithoutAUsableLastAreaTheSelectorOpens)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<FakeUserDefaults::Value> stored{std::vector<double>{1, 2, 3}, std::vector<double>{1, 2, 3, nan},
                                                      std::vector<double>{1, 2, -3, 4}, QStringLiteral("1 2 3 4")};
    for (const auto &value : stored) {
        defaults.setRaw(QStringLiteral("LumenFold.lastAreaRect"), value);
        makeCoordinator();
        coordinator->captureLastArea();
        EXPECT_THAT(overlays(), SizeIs(1));
        pressEscape();
        queue.advance(1s);
    }
}

TEST_F(AreaCaptureTest, AnAreaChosenInThisRunIsTheLastArea)
{
    coordinator->captureArea();
    select({100, 200}, {400, 450});
    queue.advance(50ms);
    coordinator->captureLastArea();
    queue.advance(60ms);
    ASSERT_THAT(manager.captures, SizeIs(2));
    EXPECT_EQ(manager.captures[1].configuration, manager.captures[0].configuration);
}

} // namespace
} // namespace lumenfold::test
