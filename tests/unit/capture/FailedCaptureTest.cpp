/// Captures that fail: what is told, and what is as it was before.
#include "tests/support/unit/LogWatch.h"
#include "tests/unit/capture/CaptureCoordinatorFixture.h"

#include <gmock/gmock.h>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using FailedCaptureTest = CaptureCoordinatorTest;

TEST_F(FailedCaptureTest, AFailureIsLoggedAndTheCardsComeBack)
{
    coordinator->captureFullScreen();
    queue.advance(1s);
    failCapturesWith(QStringLiteral("X11"));
    expectLogLine(QStringLiteral("LumenFold capture error: captureFailed: it broke (X11, code 5)"));
    coordinator->captureFullScreen();
    queue.advance(1s);
    EXPECT_EQ(visibleCards(), 1U);
    EXPECT_FALSE(coordinator->isCapturing());
    EXPECT_THAT(alerts.shown, IsEmpty());
    EXPECT_THAT(pasteboard.images, SizeIs(1)) << "the earlier picture stays";
}

TEST_F(FailedCaptureTest, NoScreenIsLogged)
{
    screens.setScreens({});
    expectLogLine(QStringLiteral("LumenFold capture error: noDisplays"));
    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_FALSE(coordinator->isCapturing());

    coordinator->captureArea();
    queue.advance(50ms);
    EXPECT_FALSE(coordinator->isCapturing());
}

TEST_F(FailedCaptureTest, AnErrorOfTheContentIsLoggedAsItIs)
{
    manager.content =
        tl::unexpected(PlatformError{QString::fromLatin1(streamErrorDomain), -3801, QStringLiteral("declined")});
    expectLogLine(QStringLiteral(
        "LumenFold capture error: declined (com.apple.ScreenCaptureKit.SCStreamErrorDomain, code -3801)"));
    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_THAT(alerts.shown, IsEmpty());
}

TEST_F(FailedCaptureTest, WhateverABackendThrowsEndsInTheLog)
{
    manager.image = [](const auto &) -> ScreenshotManager::ImageResult { throw std::bad_alloc(); };
    expectLogLine(QStringLiteral("LumenFold capture error: std::bad_alloc"));
    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_FALSE(coordinator->isCapturing());

    manager.image = [](const auto &) -> ScreenshotManager::ImageResult { throw 7; };
    expectLogLine(QStringLiteral("LumenFold capture error: unknown"));
    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_FALSE(coordinator->isCapturing());
}

TEST_F(FailedCaptureTest, AMissingPermissionIsToldAfterTheCardsAreBack)
{
    coordinator->captureFullScreen();
    queue.advance(1s);
    denyPermission();
    std::size_t cardsAtAlert = 0;
    alerts.onCall = [&](const QString &call) {
        cardsAtAlert = visibleCards();
        journal.append(call);
    };
    journal.clear();
    coordinator->captureFullScreen();
    queue.advance(60ms);
    ASSERT_THAT(alerts.shown, SizeIs(1));
    EXPECT_EQ(cardsAtAlert, 1U);
    const Alert &alert = alerts.shown[0];
    EXPECT_EQ(alert.messageText, u"Screen Recording permission required");
    EXPECT_EQ(alert.informativeText,
              u"LumenFold needs Screen Recording permission to capture your screen.\n\nOpen System Settings \u2192 "
              u"Privacy & Security \u2192 Screen Recording and enable LumenFold, then restart the app.");
    EXPECT_EQ(alert.buttons, (QStringList{QStringLiteral("Open System Settings"), QStringLiteral("Later")}));
    EXPECT_EQ(journal, (QStringList{QStringLiteral("content"), QStringLiteral("capture"), QStringLiteral("activate"),
                                    QStringLiteral("alert Screen Recording permission required")}));
    alerts.answer(1001);
    EXPECT_THAT(workspace.openedAddresses, IsEmpty());
}

TEST_F(FailedCaptureTest, TheAlertsFirstButtonOpensTheSettings)
{
    denyPermission();
    coordinator->captureFullScreen();
    queue.advance(60ms);
    alerts.answer(alertFirstButtonReturn);
    EXPECT_EQ(workspace.openedAddresses,
              QList<QUrl>{QUrl(
                  QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture"))});
}

TEST_F(FailedCaptureTest, NoCaptureBeginsWhileTheAlertIsUpAndEachAsksAnew)
{
    denyPermission();
    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_TRUE(coordinator->isCapturing());
    coordinator->captureFullScreen();
    queue.advance(1s);
    EXPECT_THAT(alerts.shown, SizeIs(1));
    alerts.answer(1001);
    EXPECT_FALSE(coordinator->isCapturing());

    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_THAT(alerts.shown, SizeIs(2));
    alerts.answer(1001);
}

TEST_F(FailedCaptureTest, ABrokenClipboardDoesNotLoseTheCard)
{
    pasteboard.isBroken = true;
    expectLogLine(QStringLiteral("LumenFold capture error: the clipboard is broken"));
    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_EQ(cardCount(), 1U);
    EXPECT_FALSE(coordinator->isCapturing());
}

TEST_F(FailedCaptureTest, AScreenThatGoesBetweenSelectionAndCaptureEndsInTheLog)
{
    screens.setScreens({left, right});
    coordinator->captureArea();
    select({100, 200}, {400, 450}, 1);
    screens.setScreens({left});
    expectLogLine(QStringLiteral("LumenFold capture error: the screen of the selected area is gone"));
    queue.advance(50ms);
    EXPECT_THAT(manager.captures, IsEmpty());
    EXPECT_FALSE(coordinator->isCapturing());
    EXPECT_EQ(cardCount(), 0U);
}

TEST_F(FailedCaptureTest, WithTheLastScreenASelectionIsCancelled)
{
    coordinator->captureArea();
    screens.setScreens({});
    queue.advance(50ms);
    EXPECT_FALSE(coordinator->isCapturing());
    EXPECT_THAT(manager.contentRequests, IsEmpty());
}

TEST_F(FailedCaptureTest, AScreenThatGoesDuringTheCaptureLeavesEverythingUsable)
{
    manager.hold();
    coordinator->captureFullScreen();
    queue.advance(60ms);
    screens.setScreens({});
    expectLogLine(QStringLiteral("LumenFold capture error: noDisplays"));
    manager.releaseAll();
    EXPECT_FALSE(coordinator->isCapturing());
    screens.setScreens({left});
    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_EQ(cardCount(), 1U);
}

} // namespace
} // namespace lumenfold::test
