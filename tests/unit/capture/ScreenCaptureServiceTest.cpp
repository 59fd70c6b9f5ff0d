#include "capture/ScreenCaptureService.h"

#include "capture/PlatformException.h"
#include "capture/ScreenCaptureError.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeScreenshotManager.h"
#include "tests/unit/capture/Processes.h"

#include <gtest/gtest.h>

#include <memory>

namespace lumenfold {
namespace {

using test::FakeScreens;
using test::FakeScreenshotManager;
using test::ownPid;

struct Outcome {
    std::optional<Image> image;
    std::exception_ptr error;
};

QCoro::Task<> observe(QCoro::Task<Image> task, std::shared_ptr<Outcome> outcome)
{
    try {
        outcome->image = co_await task;
    } catch (...) {
        outcome->error = std::current_exception();
    }
}

/// The `ScreenCaptureError` that `outcome` ended with; nothing when it ended in another way.
std::optional<ScreenCaptureError> captureError(const Outcome &outcome)
{
    if (!outcome.error) {
        return std::nullopt;
    }
    try {
        std::rethrow_exception(outcome.error);
    } catch (const ScreenCaptureError &error) {
        return error;
    } catch (...) {
        return std::nullopt;
    }
}

class ScreenCaptureServiceTest : public ::testing::Test {
protected:
    std::shared_ptr<Outcome> fullScreen()
    {
        auto outcome = std::make_shared<Outcome>();
        observe(service->captureFullScreen(), outcome);
        return outcome;
    }

    std::shared_ptr<Outcome> area(const Rect &rect, const Screen &screen)
    {
        auto outcome = std::make_shared<Outcome>();
        observe(service->capture(rect, screen), outcome);
        return outcome;
    }

    const FakeScreenshotManager::Capture &onlyCapture() { return manager.captures.at(0); }

    FakeScreens screens;
    FakeScreenshotManager manager;
    std::unique_ptr<ScreenCaptureService> service = std::make_unique<ScreenCaptureService>(manager, screens, ownPid);
    const Screen main = FakeScreens::plainScreen(1, {0, 0, 1440, 900}, 2);
    const Screen secondary = FakeScreens::plainScreen(2, {1440, 0, 1920, 1080}, 1);
};

TEST_F(ScreenCaptureServiceTest, FullScreenTakesTheWholeDisplayWithoutCursorAndSound)
{
    const auto outcome = fullScreen();
    ASSERT_TRUE(outcome->image);
    EXPECT_EQ(outcome->image->size(), (Size{1440, 900}));
    ASSERT_EQ(manager.captures.size(), 1U);
    EXPECT_EQ(
        onlyCapture().configuration,
        (StreamConfiguration{
            .sourceRect = std::nullopt, .width = 1440, .height = 900, .showsCursor = false, .capturesAudio = false}));
    ASSERT_EQ(manager.contentRequests.size(), 1U);
    EXPECT_EQ(manager.contentRequests.at(0), (ShareableContentRequest{.desktopWindows = DesktopWindows::include,
                                                                      .visibility = WindowVisibility::onScreenOnly}));
}

TEST_F(ScreenCaptureServiceTest, FullScreenTakesTheDisplayUnderThePointerAtTheMainScreensScale)
{
    screens.setScreens({main, secondary});
    screens.setPointerLocation({2000, 500});
    manager.content->displays = {{1, 1440, 900}, {2, 1920, 1080}};
    fullScreen();
    EXPECT_EQ(onlyCapture().filter.display.displayID, 2U);
    EXPECT_EQ(onlyCapture().configuration.width, 3840);
    EXPECT_EQ(onlyCapture().configuration.height, 2160);
}

TEST_F(ScreenCaptureServiceTest, FullScreenTakesTheMainDisplayWhenThePointerIsNowhere)
{
    screens.setScreens({main, secondary});
    screens.setPointerLocation({-500, -500});
    manager.content->displays = {{2, 1920, 1080}, {1, 1440, 900}};
    fullScreen();
    EXPECT_EQ(onlyCapture().filter.display.displayID, 1U);
}

TEST_F(ScreenCaptureServiceTest, FullScreenWithoutAScreenIsNoDisplays)
{
    screens.setScreens({});
    const auto outcome = fullScreen();
    ASSERT_TRUE(captureError(*outcome));
    EXPECT_EQ(captureError(*outcome)->kind(), ScreenCaptureError::Case::noDisplays);
    EXPECT_TRUE(manager.captures.empty());
}

TEST_F(ScreenCaptureServiceTest, NoListedDisplayIsNoDisplays)
{
    manager.content->displays.clear();
    for (const auto &outcome : {fullScreen(), area({0, 0, 10, 10}, main)}) {
        ASSERT_TRUE(captureError(*outcome));
        EXPECT_EQ(captureError(*outcome)->kind(), ScreenCaptureError::Case::noDisplays);
    }
    EXPECT_TRUE(manager.captures.empty());
}

TEST_F(ScreenCaptureServiceTest, AreaIsInTheDisplaysOwnSpaceAndInItsScreensScale)
{
    const auto outcome = area({100, 200, 100.4, 50.6}, main);
    ASSERT_TRUE(outcome->image);
    EXPECT_EQ(outcome->image->size(), (Size{200, 101}));
    EXPECT_EQ(onlyCapture().configuration,
              (StreamConfiguration{.sourceRect = Rect{100, 900.0 - 200 - 50.6, 100.4, 50.6},
                                   .width = 200,
                                   .height = 101,
                                   .showsCursor = false,
                                   .capturesAudio = false}));
}

TEST_F(ScreenCaptureServiceTest, AreaOfASecondScreen)
{
    screens.setScreens({main, secondary});
    manager.content->displays = {{1, 1440, 900}, {2, 1920, 1080}};
    area({1440, 980, 100, 100}, secondary);
    EXPECT_EQ(onlyCapture().filter.display.displayID, 2U);
    EXPECT_EQ(onlyCapture().configuration.sourceRect, (Rect{0, 0, 100, 100}));
    EXPECT_EQ(onlyCapture().configuration.width, 100);
}

TEST_F(ScreenCaptureServiceTest, AreaOfAnUnlistedDisplayIsTakenFromTheFirst)
{
    manager.content->displays = {{5, 800, 600}, {6, 640, 480}};
    const auto outcome = area({0, 0, 100, 100}, main);
    EXPECT_TRUE(outcome->image);
    EXPECT_EQ(onlyCapture().filter.display.displayID, 5U);
}

TEST_F(ScreenCaptureServiceTest, OwnWindowsStayOut)
{
    manager.content->applications = {{7}, {ownPid}, {8}};
    fullScreen();
    area({0, 0, 10, 10}, main);
    ASSERT_EQ(manager.captures.size(), 2U);
    for (const auto &capture : manager.captures) {
        EXPECT_EQ(capture.filter.excludingApplications, std::vector<RunningApplication>{{ownPid}});
    }
}

TEST_F(ScreenCaptureServiceTest, NothingIsExcludedWhileThereAreNoOwnWindows)
{
    manager.content->applications = {{7}, {8}};
    fullScreen();
    EXPECT_TRUE(onlyCapture().filter.excludingApplications.empty());
}

TEST_F(ScreenCaptureServiceTest, EveryStreamErrorIsAMissingPermission)
{
    for (const int code : {-3801, -3805, 0, 42}) {
        manager.image = [code](const auto &) {
            return tl::unexpected(PlatformError{QString::fromLatin1(streamErrorDomain), code, QStringLiteral("no")});
        };
        for (const auto &outcome : {fullScreen(), area({0, 0, 10, 10}, main)}) {
            ASSERT_TRUE(captureError(*outcome));
            EXPECT_EQ(captureError(*outcome)->kind(), ScreenCaptureError::Case::permissionDenied);
        }
    }
}

TEST_F(ScreenCaptureServiceTest, AnErrorOfAnotherDomainIsCarriedAlong)
{
    const PlatformError cause{QStringLiteral("X11"), 8, QStringLiteral("BadMatch")};
    manager.image = [&](const auto &) { return tl::unexpected(cause); };
    const auto outcome = fullScreen();
    ASSERT_TRUE(captureError(*outcome));
    EXPECT_EQ(captureError(*outcome)->kind(), ScreenCaptureError::Case::captureFailed);
    EXPECT_EQ(captureError(*outcome)->underlyingError(), cause);
    EXPECT_STREQ(captureError(*outcome)->what(), "captureFailed: BadMatch (X11, code 8)");
}

TEST_F(ScreenCaptureServiceTest, AnEmptyPictureIsAFailedCapture)
{
    manager.image = [](const auto &) { return Image(); };
    const auto outcome = fullScreen();
    ASSERT_TRUE(captureError(*outcome));
    EXPECT_EQ(captureError(*outcome)->kind(), ScreenCaptureError::Case::captureFailed);
}

TEST_F(ScreenCaptureServiceTest, ErrorsOfTheContentArePassedThrough)
{
    const PlatformError cause{QString::fromLatin1(streamErrorDomain), -3801, QStringLiteral("declined")};
    manager.content = tl::unexpected(cause);
    for (const auto &outcome : {fullScreen(), area({0, 0, 10, 10}, main)}) {
        ASSERT_TRUE(outcome->error);
        EXPECT_FALSE(captureError(*outcome));
        try {
            std::rethrow_exception(outcome->error);
        } catch (const PlatformException &error) {
            EXPECT_EQ(error.error(), cause);
        } catch (...) {
            ADD_FAILURE() << "another exception";
        }
    }
}

TEST_F(ScreenCaptureServiceTest, ReadsTheScreensWhenTheContentHasCome)
{
    manager.content->displays = {{1, 1440, 900}, {2, 1920, 1080}};
    manager.hold();
    const auto outcome = fullScreen();
    screens.setScreens({main, secondary});
    screens.setPointerLocation({2000, 500});
    manager.releaseAll();
    EXPECT_TRUE(outcome->image);
    EXPECT_EQ(onlyCapture().filter.display.displayID, 2U);
}

TEST_F(ScreenCaptureServiceTest, CallsMayOverlap)
{
    manager.hold();
    const auto first = fullScreen();
    const auto second = area({0, 0, 10, 20}, main);
    EXPECT_EQ(manager.waitingCount(), 2);
    manager.releaseAll();
    ASSERT_TRUE(first->image);
    ASSERT_TRUE(second->image);
    EXPECT_EQ(first->image->size(), (Size{1440, 900}));
    EXPECT_EQ(second->image->size(), (Size{20, 40}));
}

TEST_F(ScreenCaptureServiceTest, MayGoWhileACallIsWaiting)
{
    manager.hold();
    const auto outcome = fullScreen();
    service.reset();
    manager.releaseAll();
    EXPECT_TRUE(outcome->image);
}

} // namespace
} // namespace lumenfold
