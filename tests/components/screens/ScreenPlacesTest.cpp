#include "tests/components/screens/ScreensTest.h"

#include "tests/support/desktop/Wait.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace lumenfold::test {
namespace {

class ScreenPlacesTest : public ScreensTest {};

TEST_F(ScreenPlacesTest, OneScreenBeginsAtTheOrigin)
{
    const auto all = screens().all();
    ASSERT_EQ(all.size(), 1U);
    const double scale = QGuiApplication::primaryScreen()->devicePixelRatio();
    EXPECT_EQ(all.front().backingScale, scale);
    EXPECT_EQ(all.front().frame, (Rect{0, 0, 1280 / scale, 800 / scale}));
    EXPECT_EQ(all.front().visibleFrame, all.front().frame);
    EXPECT_NE(all.front().displayID, 0U);
}

TEST_F(ScreenPlacesTest, ThePrimaryScreenIsFirstAndTheOriginWhereverItStands)
{
    plugInTwo();
    const auto all = screens().all();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(screens().space().screens().front().native, right);
    EXPECT_EQ(all.front().frame.origin(), (Point{0, 0}));
    EXPECT_EQ(screens().main(), all.front());
    EXPECT_NE(all.at(0).displayID, all.at(1).displayID);

    // The left one ends where the main one begins, and starts 100 pixels lower.
    const double mainScale = all.at(0).backingScale;
    const double otherScale = all.at(1).backingScale;
    EXPECT_EQ(all.at(0).frame, (Rect{0, 0, 800 / mainScale, 600 / mainScale}));
    const double width = 480 / otherScale;
    const double height = 640 / otherScale;
    EXPECT_EQ(all.at(1).frame, (Rect{-width, (600 - 100) / mainScale - height, width, height}));
}

TEST_F(ScreenPlacesTest, DisplaysKeepTheirNumbersInAnotherRun)
{
    plugInTwo();
    const auto again = makeScreens();
    EXPECT_EQ(again->all(), screens().all());
    const DisplayID number = screenAt(left).displayID;
    plugInOne();
    plugInTwo();
    EXPECT_EQ(screenAt(left).displayID, number);
}

TEST_F(ScreenPlacesTest, ThePointerIsOnTheScreenThatShowsIt)
{
    plugInTwo();
    for (const QRect &native : {left, right}) {
        const Screen screen = screenAt(native);
        for (const QPoint corner : {native.topLeft(), native.topRight(), native.bottomLeft(), native.bottomRight()}) {
            movePointer(corner);
            EXPECT_EQ(screens().screenWithMouse(), screen) << corner.x() << ", " << corner.y();
        }
        movePointer(native.topLeft() + QPoint(30, 50));
        EXPECT_EQ(screens().pointerLocation(), (Point{screen.frame.minX() + 30 / screen.backingScale,
                                                      screen.frame.maxY() - 50 / screen.backingScale}));
    }
}

TEST_F(ScreenPlacesTest, TheToolkitPutsWindowsWhereTheSpaceSays)
{
    plugInTwo();
    for (const QRect &native : {left, right}) {
        const Screen screen = screenAt(native);
        const Rect frame{screen.frame.minX() + 20, screen.frame.minY() + 30, 100, 60};
        QWidget window(nullptr, Qt::FramelessWindowHint | Qt::BypassWindowManagerHint | Qt::Tool);
        window.setGeometry(screens().space().toQt(frame).toRect());
        window.show();
        const auto id = static_cast<xcb_window_t>(window.winId());
        const QRect expected = screens().space().toNativePixels(frame);
        EXPECT_TRUE(waitFor([&] { return server().connection().frameOf(id) == expected; }));
        EXPECT_EQ(screens().space().fromQt(QRectF(window.geometry())), frame);
    }
}

} // namespace
} // namespace lumenfold::test
