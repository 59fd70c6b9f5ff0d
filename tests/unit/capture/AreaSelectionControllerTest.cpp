#include "capture/areaselection/AreaSelectionController.h"

#include "capture/areaselection/SelectionView.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/FakeMainQueue.h"
#include "tests/support/fakes/FakePanel.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeScreenshotManager.h"
#include "tests/support/fakes/FakeWindowList.h"
#include "tests/support/unit/LogWatch.h"
#include "tests/unit/capture/Processes.h"

#include <QApplication>
#include <QMouseEvent>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumenfold {
namespace {

using namespace std::chrono_literals;
using test::FakeMainQueue;
using test::FakePanel;
using test::FakePanelFactory;
using test::FakeScreens;
using test::FakeScreenshotManager;
using test::FakeWindowList;
using test::otherPid;
using test::ownPid;
using ::testing::SizeIs;

struct Ending {
    std::optional<Rect> rect;
    std::optional<Screen> screen;
};

class AreaSelectionControllerTest : public ::testing::Test {
protected:
    AreaSelectionControllerTest() { screens.setScreens({left}); }

    void present()
    {
        controller->present([this](std::optional<Rect> rect, std::optional<Screen> screen) {
            visiblePanelsAtTheEnd = panels.stacking().size();
            endings.push_back({rect, screen});
        });
    }

    /// The overlay that covers `screen` now.
    FakePanel &overlay(const Screen &screen)
    {
        for (FakePanel *panel : panels.panels()) {
            if (panel->frame() == screen.frame && panel->isVisible()) {
                return *panel;
            }
        }
        throw std::runtime_error("no overlay on that screen");
    }

    static void send(FakePanel &panel, QEvent::Type type, Point at, Qt::MouseButton button = Qt::LeftButton)
    {
        const QPointF position(at.x, panel.frame().height - at.y);
        QMouseEvent event(type, position, position, type == QEvent::MouseMove ? Qt::NoButton : button,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button), Qt::NoModifier);
        QApplication::sendEvent(panel.contentView(), &event);
    }

    /// In view coordinates: points from the screen's bottom left, y up.
    static void press(FakePanel &panel, Point at, Qt::MouseButton button = Qt::LeftButton)
    {
        send(panel, QEvent::MouseButtonPress, at, button);
    }
    static void move(FakePanel &panel, Point to) { send(panel, QEvent::MouseMove, to); }
    static void release(FakePanel &panel, Point at) { send(panel, QEvent::MouseButtonRelease, at); }
    static void drag(FakePanel &panel, Point from, Point to)
    {
        press(panel, from);
        move(panel, to);
        release(panel, to);
    }

    FakeMainQueue queue;
    FakePanelFactory panels{queue};
    FakeScreens screens;
    FakeWindowList windowList;
    FakeScreenshotManager manager;
    const Screen left = FakeScreens::plainScreen(1, {0, 0, 1440, 900});
    const Screen right = FakeScreens::plainScreen(2, {1440, -180, 1920, 1080}, 2);
    std::unique_ptr<AreaSelectionController> controller = std::make_unique<AreaSelectionController>(
        AreaSelectionController::Collaborators{.panels = panels,
                                               .screens = screens,
                                               .windowList = windowList,
                                               .queue = queue,
                                               .captureService = ScreenCaptureService(manager, screens, ownPid),
                                               .ownProcessID = ownPid});
    std::vector<Ending> endings;
    std::size_t visiblePanelsAtTheEnd = 99;
};

TEST_F(AreaSelectionControllerTest, CoversEveryScreenAboveEverythingAndGivesTheLastOneTheKeys)
{
    screens.setScreens({left, right});
    present();
    ASSERT_THAT(panels.stacking(), SizeIs(2));
    EXPECT_EQ(panels.panels().at(0)->frame(), left.frame);
    EXPECT_EQ(panels.panels().at(1)->frame(), right.frame);
    EXPECT_EQ(panels.keyPanel(), panels.panels().at(1));
    for (const FakePanel *panel : panels.panels()) {
        EXPECT_EQ(panel->options().level, PanelLevel::screenSaver);
        EXPECT_EQ(panel->options().keyPolicy, PanelKeyPolicy::mayBecomeKey);
        EXPECT_EQ(panel->options().constraint, PanelConstraint::unconstrained);
        EXPECT_FALSE(panel->options().title.isEmpty());
        EXPECT_EQ(panel->options().initialFill, QColor::fromRgbF(0, 0, 0, 0.35F)) << "dimmed before it is painted";
        EXPECT_EQ(panel->cursor(), CursorShape::crosshair);
        EXPECT_EQ(panel->alpha(), 1);
        EXPECT_TRUE(panel->hadKeysWhenShown()) << "Escape may come as soon as the screen is dimmed";
    }
    EXPECT_TRUE(manager.captures.empty()) << "no picture is needed where windows are translucent";
}

TEST_F(AreaSelectionControllerTest, ReportsTheAreaFiftyMillisecondsAfterTheOverlaysHaveGone)
{
    present();
    drag(overlay(left), {100, 100}, {300, 250});
    EXPECT_THAT(panels.stacking(), SizeIs(0));
    queue.advance(49ms);
    EXPECT_THAT(endings, SizeIs(0));
    queue.advance(1ms);
    ASSERT_THAT(endings, SizeIs(1));
    EXPECT_EQ(endings[0].rect, (Rect{100, 100, 200, 150}));
    EXPECT_EQ(endings[0].screen, left);
    EXPECT_EQ(visiblePanelsAtTheEnd, 0U);
    EXPECT_THAT(panels.panels(), SizeIs(0)) << "overlays cost memory as long as they live";
}

TEST_F(AreaSelectionControllerTest, ReportsAnAreaOfTheSecondScreenInGlobalCoordinates)
{
    screens.setScreens({left, right});
    present();
    drag(overlay(right), {100, 100}, {300, 250});
    queue.advance(50ms);
    ASSERT_THAT(endings, SizeIs(1));
    EXPECT_EQ(endings[0].rect, (Rect{1540, -80, 200, 150}));
    EXPECT_EQ(endings[0].screen, right);
}

TEST_F(AreaSelectionControllerTest, AClickCancels)
{
    present();
    press(overlay(left), {100, 100});
    release(overlay(left), {100, 100});
    queue.advance(50ms);
    ASSERT_THAT(endings, SizeIs(1));
    EXPECT_EQ(endings[0].rect, std::nullopt);
    EXPECT_EQ(endings[0].screen, left);
}

TEST_F(AreaSelectionControllerTest, AcceptsFivePointsAndNotFour)
{
    present();
    drag(overlay(left), {100, 100}, {105, 105});
    present();
    drag(overlay(left), {100, 100}, {104, 140});
    queue.advance(50ms);
    ASSERT_THAT(endings, SizeIs(2));
    EXPECT_EQ(endings[0].rect, (Rect{100, 100, 5, 5}));
    EXPECT_EQ(endings[1].rect, std::nullopt);
}

TEST_F(AreaSelectionControllerTest, ARightClickCancelsWithoutAScreen)
{
    present();
    press(overlay(left), {100, 100}, Qt::RightButton);
    EXPECT_THAT(panels.stacking(), SizeIs(0));
    queue.advance(50ms);
    ASSERT_THAT(endings, SizeIs(1));
    EXPECT_EQ(endings[0].rect, std::nullopt);
    EXPECT_EQ(endings[0].screen, std::nullopt);
}

TEST_F(AreaSelectionControllerTest, EscapeDuringADragCancelsWithoutAScreen)
{
    screens.setScreens({left, right});
    present();
    press(overlay(left), {100, 100});
    move(overlay(left), {300, 300});
    EXPECT_TRUE(panels.keyPanel()->pressKey({.type = KeyEventType::keyDown, .keyCode = 53}));
    EXPECT_THAT(panels.stacking(), SizeIs(0));
    queue.advance(50ms);
    ASSERT_THAT(endings, SizeIs(1));
    EXPECT_EQ(endings[0].rect, std::nullopt);
    EXPECT_EQ(endings[0].screen, std::nullopt);
}

TEST_F(AreaSelectionControllerTest, OtherKeysAreNotUsed)
{
    present();
    EXPECT_FALSE(panels.keyPanel()->pressKey({.type = KeyEventType::keyDown, .keyCode = 36}));
    EXPECT_FALSE(panels.keyPanel()->pressKey({.type = KeyEventType::keyUp, .keyCode = 53}));
    EXPECT_THAT(panels.stacking(), SizeIs(1));
    queue.advance(1s);
    EXPECT_THAT(endings, SizeIs(0));
}

TEST_F(AreaSelectionControllerTest, SnapsToOtherProgramsWindowsBelowEightPoints)
{
    // Right edge at x 607.9, bottom edge at y 100 in the screen's coordinates.
    windowList.windows = {FakeWindowList::ordinaryWindow(otherPid, {50, 300, 557.9, 500})};
    present();
    drag(overlay(left), {300, 500}, {600, 108});
    queue.advance(50ms);
    ASSERT_THAT(endings, SizeIs(1));
    EXPECT_EQ(endings[0].rect, (Rect{300, 108, 307.9, 392}));
}

TEST_F(AreaSelectionControllerTest, SnapsNeitherToOwnNorToFloatingWindows)
{
    windowList.windows = {FakeWindowList::ordinaryWindow(ownPid, {100, 100, 500, 500}),
                          {.ownerProcessID = otherPid, .layer = 3, .bounds = WindowBounds{100, 100, 500, 500}}};
    present();
    drag(overlay(left), {103, 797}, {597, 303});
    queue.advance(50ms);
    ASSERT_THAT(endings, SizeIs(1));
    EXPECT_EQ(endings[0].rect, (Rect{103, 303, 494, 494}));
}

TEST_F(AreaSelectionControllerTest, AsksForTheWindowsAtEachPress)
{
    screens.setScreens({left, right});
    present();
    EXPECT_EQ(windowList.requests, 0);
    windowList.windows = {FakeWindowList::ordinaryWindow(otherPid, {1640, 80, 200, 200})};
    drag(overlay(right), {205, 1003}, {402, 795});
    queue.advance(50ms);
    EXPECT_EQ(windowList.requests, 1);
    ASSERT_THAT(endings, SizeIs(1));
    EXPECT_EQ(endings[0].rect, (Rect{1640, 620, 200, 200}));
}

TEST_F(AreaSelectionControllerTest, CanBePresentedAgain)
{
    for (int round = 1; round <= 3; ++round) {
        present();
        EXPECT_THAT(panels.stacking(), SizeIs(1));
        drag(overlay(left), {100, 100}, {200, 200});
        queue.advance(50ms);
        EXPECT_THAT(endings, SizeIs(round));
    }
}

TEST_F(AreaSelectionControllerTest, EventsAfterTheEndChangeNothing)
{
    present();
    FakePanel &panel = overlay(left);
    press(panel, {100, 100}, Qt::RightButton);
    press(panel, {100, 100}, Qt::RightButton);
    drag(panel, {100, 100}, {300, 300});
    queue.advance(50ms);
    EXPECT_THAT(endings, SizeIs(1));
}

TEST_F(AreaSelectionControllerTest, AnUnpluggedScreenLosesItsOverlayAndTheKeysGoToAnother)
{
    screens.setScreens({left, right});
    present();
    press(overlay(right), {100, 100});
    move(overlay(right), {300, 300});
    screens.setScreens({left});
    ASSERT_THAT(panels.stacking(), SizeIs(1));
    EXPECT_EQ(panels.stacking()[0]->frame(), left.frame);
    EXPECT_EQ(panels.keyPanel(), panels.stacking()[0]);
    drag(overlay(left), {100, 100}, {300, 250});
    queue.advance(50ms);
    ASSERT_THAT(endings, SizeIs(1));
    EXPECT_EQ(endings[0].screen, left);
}

TEST_F(AreaSelectionControllerTest, ANewScreenIsCoveredAndAChangedOneAnew)
{
    present();
    screens.setScreens({left, right});
    EXPECT_THAT(panels.stacking(), SizeIs(2));
    Screen larger = left;
    larger.frame = {0, 0, 1600, 900};
    Screen shifted = right;
    shifted.frame.x = 1600;
    screens.setScreens({larger, shifted});
    ASSERT_THAT(panels.stacking(), SizeIs(2));
    EXPECT_NO_THROW(overlay(larger));
    EXPECT_NO_THROW(overlay(shifted));
}

TEST_F(AreaSelectionControllerTest, APanelThatTakesRoomOnAScreenDoesNotDisturbTheDrag)
{
    present();
    press(overlay(left), {100, 100});
    Screen withPanel = left;
    withPanel.visibleFrame.height -= 30;
    screens.setScreens({withPanel});
    move(overlay(left), {300, 250});
    release(overlay(left), {300, 250});
    queue.advance(50ms);
    ASSERT_THAT(endings, SizeIs(1));
    EXPECT_EQ(endings[0].rect, (Rect{100, 100, 200, 150}));
}

TEST_F(AreaSelectionControllerTest, WithTheLastScreenTheSelectionIsCancelled)
{
    present();
    screens.setScreens({});
    EXPECT_THAT(panels.stacking(), SizeIs(0));
    queue.advance(50ms);
    ASSERT_THAT(endings, SizeIs(1));
    EXPECT_EQ(endings[0].rect, std::nullopt);
    EXPECT_EQ(endings[0].screen, std::nullopt);
}

TEST_F(AreaSelectionControllerTest, WithoutAnyScreenIsCancelledLater)
{
    screens.setScreens({});
    present();
    EXPECT_THAT(endings, SizeIs(0));
    queue.advance(50ms);
    EXPECT_THAT(endings, SizeIs(1));
}

TEST_F(AreaSelectionControllerTest, ScreensThatChangeWhileIdleDoNothing)
{
    screens.setScreens({left, right});
    screens.setScreens({});
    queue.advance(1s);
    EXPECT_THAT(panels.panels(), SizeIs(0));
}

TEST_F(AreaSelectionControllerTest, WithoutACompositorTakesPicturesOfAllScreensBeforeAnyOverlayAppears)
{
    panels.setTranslucencyAvailable(false);
    screens.setScreens({left, right});
    manager.content->displays = {{1, 1440, 900}, {2, 1920, 1080}};
    manager.hold();
    present();
    manager.release(); // what there is on the left screen
    manager.release(); // its picture
    manager.release();
    EXPECT_THAT(panels.panels(), SizeIs(0));
    manager.releaseAll();
    // The pixels come from a pool.
    EXPECT_TRUE(test::waitFor([this] { return panels.stacking().size() == 2; }));
    ASSERT_THAT(manager.captures, SizeIs(2));
    EXPECT_EQ(manager.captures[0].configuration.width, 1440);
    EXPECT_EQ(manager.captures[1].configuration.width, 3840);
    EXPECT_EQ(manager.captures[1].configuration.sourceRect, (Rect{0, 0, 1920, 1080}));

    QWidget *const view = panels.panels().at(0)->contentView();
    view->resize(1440, 900);
    const QImage shown = view->grab().toImage();
    EXPECT_EQ(QColor(shown.pixel(700, 400)), QColor(0, 83, 83)) << "dark cyan (0, 128, 128) under the dimming";
}

TEST_F(AreaSelectionControllerTest, WithoutACompositorAScreenUnpluggedMeanwhileIsNotCovered)
{
    panels.setTranslucencyAvailable(false);
    screens.setScreens({left, right});
    manager.hold();
    present();
    screens.setScreens({left});
    manager.releaseAll();
    ASSERT_TRUE(test::waitFor([this] { return panels.stacking().size() == 1; }));
    EXPECT_EQ(panels.stacking()[0]->frame(), left.frame);
}

TEST_F(AreaSelectionControllerTest, WithoutACompositorAScreenPluggedInMeanwhileIsCoveredToo)
{
    panels.setTranslucencyAvailable(false);
    manager.hold();
    present();
    screens.setScreens({left, right});
    manager.releaseAll();
    EXPECT_TRUE(test::waitFor([this] { return panels.stacking().size() == 2; }));
    EXPECT_THAT(manager.captures, SizeIs(2));
}

TEST_F(AreaSelectionControllerTest, WithoutACompositorAllScreensGoneMeanwhileCancels)
{
    panels.setTranslucencyAvailable(false);
    manager.hold();
    present();
    screens.setScreens({});
    manager.releaseAll();
    queue.advance(50ms);
    EXPECT_THAT(panels.panels(), SizeIs(0));
    EXPECT_THAT(endings, SizeIs(1));
}

TEST_F(AreaSelectionControllerTest, WithoutAPictureAnAreaCanStillBeChosen)
{
    panels.setTranslucencyAvailable(false);
    manager.image = [](const auto &) {
        return tl::unexpected(PlatformError{QStringLiteral("X11"), 8, QStringLiteral("BadMatch")});
    };
    test::expectLogLine(QStringLiteral("LumenFold capture error: captureFailed: BadMatch (X11, code 8)"));
    present();
    ASSERT_THAT(panels.stacking(), SizeIs(1));
    drag(overlay(left), {100, 100}, {300, 250});
    queue.advance(50ms);
    ASSERT_THAT(endings, SizeIs(1));
    EXPECT_EQ(endings[0].rect, (Rect{100, 100, 200, 150}));
}

TEST_F(AreaSelectionControllerTest, MayGoWhileItWaitsForAPicture)
{
    panels.setTranslucencyAvailable(false);
    manager.hold();
    present();
    controller.reset();
    manager.releaseAll();
    queue.advance(1s);
    EXPECT_THAT(panels.panels(), SizeIs(0));
    EXPECT_THAT(endings, SizeIs(0));
}

TEST_F(AreaSelectionControllerTest, MayGoBetweenTheEndAndTheCompletion)
{
    present();
    drag(overlay(left), {100, 100}, {300, 250});
    controller.reset();
    queue.advance(50ms);
    EXPECT_THAT(endings, SizeIs(1));
}

} // namespace
} // namespace lumenfold
