#include "capture/CaptureCoordinator.h"

#include "app/actions/ActionHandler.h"
#include "app/configuration/AppConfig.h"
#include "capture/areaselection/AreaSelectionController.h"
#include "cards/PreviewModel.h"
#include "cards/PreviewWindowController.h"
#include "editor/EditorWindow.h"
#include "tests/support/fakes/FakeAlerts.h"
#include "tests/support/fakes/FakeCardStore.h"
#include "tests/support/fakes/FakeCardViews.h"
#include "tests/support/fakes/FakeEventMonitors.h"
#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakeMainQueue.h"
#include "tests/support/fakes/FakePanel.h"
#include "tests/support/fakes/FakePasteboard.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeScreenshotManager.h"
#include "tests/support/fakes/FakeUserDefaults.h"
#include "tests/support/fakes/FakeWindowList.h"
#include "tests/support/fakes/FakeWorkspace.h"
#include "tests/support/unit/LogWatch.h"

#include <QApplication>
#include <QMouseEvent>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace lumenfold {
namespace {

using namespace std::chrono_literals;
using test::FakePanel;
using test::FakeScreens;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr qint64 ownPid = 100;

class FakeEditorWindow : public EditorWindow {
public:
    explicit FakeEditorWindow(QStringList &journal) : m_journal(journal) {}

    bool hideForCapture() override
    {
        m_journal.append(QStringLiteral("hide editor"));
        return std::exchange(isVisible, false);
    }
    void restoreAfterCapture() override
    {
        m_journal.append(QStringLiteral("restore editor"));
        isVisible = true;
    }

    bool isVisible = true;

private:
    QStringList &m_journal;
};

class BrokenPasteboard : public test::FakePasteboard {
public:
    void clearContents() override
    {
        if (isBroken) {
            throw std::runtime_error("the clipboard is broken");
        }
        FakePasteboard::clearContents();
    }
    bool isBroken = false;
};

class CaptureCoordinatorTest : public ::testing::Test {
protected:
    CaptureCoordinatorTest()
    {
        screens.setScreens({left});
        manager.content->displays = {{1, 1440, 900}, {2, 1920, 1080}};
        manager.onCall = [this](const QString &call) {
            visibleCardsAtRequest = visibleCards();
            journal.append(call);
        };
        alerts.onCall = [this](const QString &call) { journal.append(call); };
        workspace.onCall = [this](const QString &call) { journal.append(call); };
        makeCoordinator();
    }

    void makeCoordinator()
    {
        const ScreenCaptureService service(manager, screens, ownPid);
        coordinator.reset();
        coordinator = std::make_unique<CaptureCoordinator>(
            CaptureCoordinator::Collaborators{.captureService = service,
                                              .areaController = std::make_unique<AreaSelectionController>(
                                                  AreaSelectionController::Collaborators{.panels = panels,
                                                                                         .screens = screens,
                                                                                         .windowList = windows,
                                                                                         .queue = queue,
                                                                                         .captureService = service,
                                                                                         .ownProcessID = ownPid}),
                                              .previewController = std::make_unique<PreviewWindowController>(
                                                  PreviewWindowController::Collaborators{.panels = panels,
                                                                                         .monitors = monitors,
                                                                                         .screens = screens,
                                                                                         .config = config,
                                                                                         .queue = queue,
                                                                                         .views = views,
                                                                                         .store = &store,
                                                                                         .fullSizePreview = nullptr,
                                                                                         .editor = nullptr}),
                                              .actions = actions,
                                              .screens = screens,
                                              .defaults = defaults,
                                              .queue = queue,
                                              .alerts = alerts,
                                              .workspace = workspace,
                                              .editorWindow = [this] { return editor; }});
    }

    [[nodiscard]] std::vector<FakePanel *> visible(PanelLevel level) const
    {
        std::vector<FakePanel *> found = panels.stacking();
        std::erase_if(found, [&](const FakePanel *panel) { return panel->options().level != level; });
        return found;
    }
    [[nodiscard]] std::size_t visibleCards() const { return visible(PanelLevel::floating).size(); }
    [[nodiscard]] std::vector<FakePanel *> overlays() const { return visible(PanelLevel::screenSaver); }
    [[nodiscard]] std::size_t cardCount() const
    {
        const auto models = views.models();
        return models.size() - static_cast<std::size_t>(std::ranges::count(models, nullptr));
    }

    static void send(FakePanel &panel, QEvent::Type type, Point at)
    {
        const QPointF position(at.x, panel.frame().height - at.y);
        QMouseEvent event(type, position, position, type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(panel.contentView(), &event);
    }

    /// Drags out an area on the overlay of the screen with the frame `screen`; points from the screen's bottom left.
    void select(Point from, Point to, std::size_t overlay = 0)
    {
        FakePanel &panel = *overlays().at(overlay);
        send(panel, QEvent::MouseButtonPress, from);
        send(panel, QEvent::MouseMove, to);
        send(panel, QEvent::MouseButtonRelease, to);
    }

    void pressEscape() { panels.keyPanel()->pressKey({.type = KeyEventType::keyDown, .keyCode = 53}); }

    void failCapturesWith(const QString &domain)
    {
        manager.image = [domain](const auto &) {
            return tl::unexpected(PlatformError{domain, 5, QStringLiteral("it broke")});
        };
    }
    void denyPermission() { failCapturesWith(QString::fromLatin1(streamErrorDomain)); }

    QStringList journal;
    FakeScreens screens;
    test::FakeUserDefaults defaults;
    test::FakeFileManager files;
    AppConfig config{defaults, screens, files};
    test::FakeMainQueue queue;
    test::FakePanelFactory panels{queue};
    test::FakeEventMonitors monitors;
    test::FakeCardViews views;
    test::FakeCardStore store;
    test::FakeWindowList windows;
    test::FakeScreenshotManager manager;
    test::FakeAlerts alerts;
    test::FakeWorkspace workspace;
    BrokenPasteboard pasteboard;
    ActionHandler actions{pasteboard, config};
    EditorWindow *editor = nullptr;
    std::size_t visibleCardsAtRequest = 99;
    const Screen left = FakeScreens::plainScreen(1, {0, 0, 1440, 900});
    const Screen right = FakeScreens::plainScreen(2, {1440, 0, 1920, 1080});
    std::unique_ptr<CaptureCoordinator> coordinator;
};

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

TEST_F(CaptureCoordinatorTest, TheSelectorIsShownOnceHoweverOftenTheKeyIsPressed)
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

TEST_F(CaptureCoordinatorTest, AnAreaIsCapturedAsSoonAsTheOverlaysHaveGone)
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

TEST_F(CaptureCoordinatorTest, AnAreaIsRememberedBeforeItIsCaptured)
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

TEST_F(CaptureCoordinatorTest, AnAreaIsRememberedAlsoWhenItsCaptureFails)
{
    failCapturesWith(QStringLiteral("X11"));
    test::expectLogLine(QStringLiteral("LumenFold capture error: captureFailed: it broke (X11, code 5)"));
    coordinator->captureArea();
    select({100, 200}, {400, 450});
    queue.advance(50ms);
    EXPECT_EQ(defaults.numbers(QStringLiteral("LumenFold.lastAreaRect")), (std::vector<double>{100, 200, 300, 250}));
    EXPECT_FALSE(coordinator->isCapturing());
}

TEST_F(CaptureCoordinatorTest, ACancelledSelectionLeavesTheLastAreaAndTheClipboardAlone)
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

TEST_F(CaptureCoordinatorTest, TheLastAreaIsTakenWithoutTheSelector)
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

TEST_F(CaptureCoordinatorTest, TheLastAreaIsTakenAsItIsAlsoBeyondTheScreen)
{
    defaults.setNumbers(QStringLiteral("LumenFold.lastAreaRect"), {1400, 850, 300, 250});
    defaults.setInteger(QStringLiteral("LumenFold.lastAreaDisplayID"), 1);
    makeCoordinator();
    coordinator->captureLastArea();
    queue.advance(60ms);
    ASSERT_THAT(manager.captures, SizeIs(1));
    EXPECT_EQ(manager.captures[0].configuration.sourceRect, (Rect{1400, -200, 300, 250}));
}

TEST_F(CaptureCoordinatorTest, TheLastAreaOfAnUnpluggedScreenIsTakenWhereItsCentreIs)
{
    defaults.setNumbers(QStringLiteral("LumenFold.lastAreaRect"), {100, 200, 300, 250});
    defaults.setInteger(QStringLiteral("LumenFold.lastAreaDisplayID"), 77);
    makeCoordinator();
    coordinator->captureLastArea();
    queue.advance(60ms);
    ASSERT_THAT(manager.captures, SizeIs(1));
    EXPECT_EQ(manager.captures[0].filter.display.displayID, 1U);
}

TEST_F(CaptureCoordinatorTest, TheLastAreaOutsideEveryScreenIsChosenAnew)
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

TEST_F(CaptureCoordinatorTest, WithoutAUsableLastAreaTheSelectorOpens)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<test::FakeUserDefaults::Value> stored{
        std::vector<double>{1, 2, 3}, std::vector<double>{1, 2, 3, nan}, std::vector<double>{1, 2, -3, 4},
        QStringLiteral("1 2 3 4")};
    for (const auto &value : stored) {
        defaults.setRaw(QStringLiteral("LumenFold.lastAreaRect"), value);
        makeCoordinator();
        coordinator->captureLastArea();
        EXPECT_THAT(overlays(), SizeIs(1));
        pressEscape();
        queue.advance(1s);
    }
}

TEST_F(CaptureCoordinatorTest, AnAreaChosenInThisRunIsTheLastArea)
{
    coordinator->captureArea();
    select({100, 200}, {400, 450});
    queue.advance(50ms);
    coordinator->captureLastArea();
    queue.advance(60ms);
    ASSERT_THAT(manager.captures, SizeIs(2));
    EXPECT_EQ(manager.captures[1].configuration, manager.captures[0].configuration);
}

TEST_F(CaptureCoordinatorTest, AFailureIsLoggedAndTheCardsComeBack)
{
    coordinator->captureFullScreen();
    queue.advance(1s);
    failCapturesWith(QStringLiteral("X11"));
    test::expectLogLine(QStringLiteral("LumenFold capture error: captureFailed: it broke (X11, code 5)"));
    coordinator->captureFullScreen();
    queue.advance(1s);
    EXPECT_EQ(visibleCards(), 1U);
    EXPECT_FALSE(coordinator->isCapturing());
    EXPECT_THAT(alerts.shown, IsEmpty());
    EXPECT_THAT(pasteboard.images, SizeIs(1)) << "the earlier picture stays";
}

TEST_F(CaptureCoordinatorTest, NoScreenIsLogged)
{
    screens.setScreens({});
    test::expectLogLine(QStringLiteral("LumenFold capture error: noDisplays"));
    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_FALSE(coordinator->isCapturing());

    coordinator->captureArea();
    queue.advance(50ms);
    EXPECT_FALSE(coordinator->isCapturing());
}

TEST_F(CaptureCoordinatorTest, AnErrorOfTheContentIsLoggedAsItIs)
{
    manager.content =
        tl::unexpected(PlatformError{QString::fromLatin1(streamErrorDomain), -3801, QStringLiteral("declined")});
    test::expectLogLine(QStringLiteral(
        "LumenFold capture error: declined (com.apple.ScreenCaptureKit.SCStreamErrorDomain, code -3801)"));
    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_THAT(alerts.shown, IsEmpty());
}

TEST_F(CaptureCoordinatorTest, WhateverABackendThrowsEndsInTheLog)
{
    manager.image = [](const auto &) -> ScreenshotManager::ImageResult { throw std::bad_alloc(); };
    test::expectLogLine(QStringLiteral("LumenFold capture error: std::bad_alloc"));
    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_FALSE(coordinator->isCapturing());

    manager.image = [](const auto &) -> ScreenshotManager::ImageResult { throw 7; };
    test::expectLogLine(QStringLiteral("LumenFold capture error: unknown"));
    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_FALSE(coordinator->isCapturing());
}

TEST_F(CaptureCoordinatorTest, AMissingPermissionIsToldAfterTheCardsAreBack)
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

TEST_F(CaptureCoordinatorTest, TheAlertsFirstButtonOpensTheSettings)
{
    denyPermission();
    coordinator->captureFullScreen();
    queue.advance(60ms);
    alerts.answer(alertFirstButtonReturn);
    EXPECT_EQ(workspace.openedAddresses,
              QList<QUrl>{QUrl(
                  QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture"))});
}

TEST_F(CaptureCoordinatorTest, NoCaptureBeginsWhileTheAlertIsUpAndEachAsksAnew)
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

TEST_F(CaptureCoordinatorTest, AnOpenEditorIsHiddenAndShownAgain)
{
    FakeEditorWindow window(journal);
    editor = &window;
    coordinator->captureFullScreen();
    EXPECT_FALSE(window.isVisible);
    queue.advance(60ms);
    EXPECT_TRUE(window.isVisible);
    EXPECT_EQ(journal, (QStringList{QStringLiteral("hide editor"), QStringLiteral("content"), QStringLiteral("capture"),
                                    QStringLiteral("restore editor")}));
}

TEST_F(CaptureCoordinatorTest, AnOpenEditorIsShownAgainAfterAFailureAndAfterACancellation)
{
    FakeEditorWindow window(journal);
    editor = &window;
    failCapturesWith(QStringLiteral("X11"));
    test::expectLogLine(QStringLiteral("LumenFold capture error: captureFailed: it broke (X11, code 5)"));
    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_TRUE(window.isVisible);

    coordinator->captureArea();
    EXPECT_FALSE(window.isVisible);
    pressEscape();
    queue.advance(50ms);
    EXPECT_TRUE(window.isVisible);
    EXPECT_EQ(journal.count(QStringLiteral("restore editor")), 2);
}

TEST_F(CaptureCoordinatorTest, AClosedEditorStaysClosed)
{
    FakeEditorWindow window(journal);
    window.isVisible = false;
    editor = &window;
    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_FALSE(journal.contains(QStringLiteral("restore editor")));
}

TEST_F(CaptureCoordinatorTest, AnEditorThatGoesDuringACaptureIsNotAskedAgain)
{
    FakeEditorWindow window(journal);
    editor = &window;
    coordinator->captureFullScreen();
    editor = nullptr;
    queue.advance(60ms);
    EXPECT_FALSE(journal.contains(QStringLiteral("restore editor")));
    EXPECT_EQ(cardCount(), 1U);
}

TEST_F(CaptureCoordinatorTest, ABrokenClipboardDoesNotLoseTheCard)
{
    pasteboard.isBroken = true;
    test::expectLogLine(QStringLiteral("LumenFold capture error: the clipboard is broken"));
    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_EQ(cardCount(), 1U);
    EXPECT_FALSE(coordinator->isCapturing());
}

TEST_F(CaptureCoordinatorTest, AScreenThatGoesBetweenSelectionAndCaptureEndsInTheLog)
{
    screens.setScreens({left, right});
    coordinator->captureArea();
    select({100, 200}, {400, 450}, 1);
    screens.setScreens({left});
    test::expectLogLine(QStringLiteral("LumenFold capture error: the screen of the selected area is gone"));
    queue.advance(50ms);
    EXPECT_THAT(manager.captures, IsEmpty());
    EXPECT_FALSE(coordinator->isCapturing());
    EXPECT_EQ(cardCount(), 0U);
}

TEST_F(CaptureCoordinatorTest, WithTheLastScreenASelectionIsCancelled)
{
    coordinator->captureArea();
    screens.setScreens({});
    queue.advance(50ms);
    EXPECT_FALSE(coordinator->isCapturing());
    EXPECT_THAT(manager.contentRequests, IsEmpty());
}

TEST_F(CaptureCoordinatorTest, AScreenThatGoesDuringTheCaptureLeavesEverythingUsable)
{
    manager.hold();
    coordinator->captureFullScreen();
    queue.advance(60ms);
    screens.setScreens({});
    test::expectLogLine(QStringLiteral("LumenFold capture error: noDisplays"));
    manager.releaseAll();
    EXPECT_FALSE(coordinator->isCapturing());
    screens.setScreens({left});
    coordinator->captureFullScreen();
    queue.advance(60ms);
    EXPECT_EQ(cardCount(), 1U);
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
} // namespace lumenfold
