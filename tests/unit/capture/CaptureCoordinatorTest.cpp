/// What becomes of one capture, and of two.
#include "tests/unit/capture/CaptureCoordinatorFixture.h"

#include <gmock/gmock.h>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

TEST_F(CaptureCoordinatorTest, FullScreenIsTakenSixtyMillisecondsLater)
{
    coordinator->captureFullScreen();
    EXPECT_TRUE(coordinator->isCapturing());
    EXPECT_THAT(manager.expected, ElementsAre(left.displayID));
    queue.advance(59ms);
    EXPECT_THAT(manager.captures, IsEmpty());
    queue.advance(1ms);
    ASSERT_THAT(manager.captures, SizeIs(1));
    EXPECT_EQ(manager.captures[0].configuration.sourceRect, std::nullopt);
    EXPECT_FALSE(coordinator->isCapturing());
}

TEST_F(CaptureCoordinatorTest, ACaptureIsOnTheClipboardAndStandsAsAKeptCard)
{
    coordinator->captureFullScreen();
    queue.advance(60ms);
    ASSERT_EQ(cardCount(), 1U);
    ASSERT_THAT(pasteboard.images, SizeIs(1));
    EXPECT_EQ(pasteboard.images[0], views.last()->image());
    EXPECT_EQ(pasteboard.images[0].size(), (Size{1440, 900}));
    EXPECT_TRUE(store.calls.contains(QStringLiteral("save ") + views.last()->screenshotId()));
    EXPECT_THAT(store.manifest, SizeIs(1));
}

TEST_F(CaptureCoordinatorTest, EveryCaptureReplacesTheClipboard)
{
    coordinator->captureFullScreen();
    queue.advance(60ms);
    const Image first = pasteboard.images.at(0);
    coordinator->captureFullScreen();
    queue.advance(60ms);
    ASSERT_THAT(pasteboard.images, SizeIs(1));
    EXPECT_NE(pasteboard.images[0], first);
    EXPECT_EQ(cardCount(), 2U);
}

TEST_F(CaptureCoordinatorTest, CardsAreHiddenWhileThePictureIsTakenAndBackAfterwards)
{
    coordinator->captureFullScreen();
    queue.advance(1s);
    EXPECT_EQ(visibleCards(), 1U);
    manager.hold();
    coordinator->captureFullScreen();
    EXPECT_EQ(visibleCards(), 0U);
    queue.advance(60ms);
    EXPECT_EQ(visibleCardsAtRequest, 0U);
    manager.releaseAll();
    queue.advance(1s);
    EXPECT_EQ(visibleCards(), 2U);
}

TEST_F(CaptureCoordinatorTest, OnlyOneCaptureRunsAtATime)
{
    manager.hold();
    coordinator->captureFullScreen();
    coordinator->captureFullScreen();
    coordinator->captureArea();
    coordinator->captureLastArea();
    queue.advance(1s);
    EXPECT_THAT(overlays(), IsEmpty());
    manager.releaseAll();
    EXPECT_THAT(manager.captures, SizeIs(1));
    EXPECT_EQ(cardCount(), 1U);

    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_EQ(cardCount(), 2U);
}

TEST_F(CaptureCoordinatorTest, MayGoAtEverySuspension)
{
    manager.hold();
    coordinator->captureFullScreen();
    makeCoordinator(); // during the settling delay
    queue.advance(1s);
    EXPECT_EQ(manager.waitingCount(), 0);

    coordinator->captureFullScreen();
    queue.advance(60ms);
    makeCoordinator(); // while the content is fetched
    manager.release();
    EXPECT_EQ(manager.waitingCount(), 1) << "the capture itself";
    manager.releaseAll();
    EXPECT_EQ(cardCount(), 0U);

    coordinator->captureArea();
    select({100, 200}, {400, 450});
    makeCoordinator(); // before the selection is delivered
    queue.advance(1s);
    EXPECT_THAT(pasteboard.images, IsEmpty());

    denyPermission();
    coordinator->captureFullScreen();
    queue.advance(60ms);
    makeCoordinator(); // while the alert is up
    alerts.answer(1001);
    EXPECT_FALSE(coordinator->isCapturing());
}

TEST_F(CaptureCoordinatorTest, ForwardsTheCardsOfTheLastRun)
{
    store.images.insert(QStringLiteral("kept"), Image::fromPixels(QImage(40, 30, QImage::Format_RGB32)));
    store.manifest = {{.id = QStringLiteral("kept")}};
    coordinator->restorePreviousCards();
    EXPECT_EQ(cardCount(), 1U);
    store.calls.clear();
    coordinator->persistCards();
    EXPECT_TRUE(store.calls.contains(QStringLiteral("manifest")));
}

TEST_F(CaptureCoordinatorTest, ADisplayNumberThatIsNoneEndsTheProgram)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    defaults.setInteger(QStringLiteral("LumenFold.lastAreaDisplayID"), 4294967296LL);
    EXPECT_DEATH(makeCoordinator(), "LumenFold.lastAreaDisplayID");
}

} // namespace
} // namespace lumenfold::test
