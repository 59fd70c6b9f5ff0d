/// Areas that are dragged out with the pointer.
#include "tests/desktop/DesktopSetting.h"
#include "tests/support/desktop/DesktopTest.h"
#include "tests/support/desktop/Wait.h"

#include <cmath>

namespace lumenfold::test {
namespace {

class AreaCapture : public DesktopSettingTest {
protected:
    Desktop &startHere()
    {
        const DesktopSetting setting = GetParam();
        Desktop &desktop = start(setting.options());
        m_screen = desktop.paintBackground(knownPicture(desktop.server().size()));
        return desktop;
    }

    void beginSelection(Desktop &desktop)
    {
        desktop.press("Super+Alt+2");
        desktop.waitForOverlays({QRect(QPoint(0, 0), desktop.server().size())});
    }

    /// In points.
    [[nodiscard]] QPoint at(int x, int y) const { return QPoint(x, y) * GetParam().scale; }

    QImage m_screen;
};

TEST_P(AreaCapture, WhatIsDraggedIsOnTheClipboard)
{
    Desktop &desktop = startHere();
    beginSelection(desktop);
    desktop.pointer().drag(at(400, 150), at(733, 491));
    desktop.waitForClipboard();
    EXPECT_TRUE(samePicture(
        desktop.clipboardPicture(),
        m_screen.copy(QRect(at(400, 150), at(732, 490) + QPoint(GetParam().scale - 1, GetParam().scale - 1)))));
    const CardColumn column{.workArea = desktop.workArea(), .scale = GetParam().scale};
    EXPECT_EQ(desktop.waitForPanels(1).first().frame, column.slot(0));
}

TEST_P(AreaCapture, TheOverlayDimsTheScreenAndLeavesTheAreaClear)
{
    Desktop &desktop = startHere();
    beginSelection(desktop);
    const QPoint somewhere = at(1100, 60);
    // Black at 0.35.
    const QColor before = m_screen.pixelColor(somewhere);
    QColor after;
    const auto isDimmed = [&](int (QColor::*part)() const) {
        return std::abs((after.*part)() - (before.*part)() * 0.65) <= 2;
    };
    // A compositing manager takes its time, and may show black meanwhile.
    EXPECT_TRUE(waitFor([&] {
        after = desktop.picture(QRect(somewhere, QSize(1, 1))).pixelColor(0, 0);
        return isDimmed(&QColor::red) && isDimmed(&QColor::green) && isDimmed(&QColor::blue);
    })) << qPrintable(after.name());

    desktop.pointer().moveTo(at(400, 150));
    desktop.pointer().down();
    desktop.pointer().moveTo(at(500, 250));
    desktop.pointer().moveTo(at(700, 450));
    const QRect inside(at(410, 160), at(690, 440));
    EXPECT_TRUE(waitFor([&] { return differingPixels(desktop.picture(inside), m_screen.copy(inside)) == 0; }));
    EXPECT_TRUE(samePicture(desktop.picture(inside), m_screen.copy(inside)));
    desktop.pointer().up();
    desktop.waitForClipboard();
}

TEST_P(AreaCapture, EdgesSnapToOtherWindows)
{
    Desktop &desktop = startHere();
    const int scale = GetParam().scale;
    TestWindow &window = desktop.openWindow({.frame = {at(500, 200), QSize(300, 200) * scale}});
    const QImage screen = desktop.waitForStillPicture();
    // A tiling manager puts it elsewhere.
    const QRect frame = window.frame();
    const QPoint almostThere = QPoint(5, 5) * scale;

    beginSelection(desktop);
    desktop.pointer().drag(frame.topLeft() + almostThere, frame.bottomRight() + QPoint(1, 1) - almostThere);
    desktop.waitForClipboard();
    EXPECT_TRUE(samePicture(desktop.clipboardPicture(), screen.copy(frame)));
}

TEST_P(AreaCapture, EscapeARightClickAndAClickCancel)
{
    Desktop &desktop = startHere();
    TestWindow &window = desktop.openWindow({.frame = {QPoint(500, 200), QSize(300, 200)}});
    window.focus();
    const QImage screen = desktop.waitForStillPicture();
    const auto expectNothingHappened = [&] {
        desktop.waitForPanels(0);
        EXPECT_TRUE(samePicture(desktop.waitForStillPicture(), screen));
        EXPECT_EQ(desktop.clipboard().ownerChanges(), 0);
        EXPECT_TRUE(waitFor([&] { return window.hasFocus(); }));
    };

    beginSelection(desktop);
    desktop.press("Escape");
    expectNothingHappened();

    beginSelection(desktop);
    desktop.pointer().click(at(600, 300), Button::right);
    expectNothingHappened();

    beginSelection(desktop);
    desktop.pointer().click(at(600, 300));
    expectNothingHappened();

    beginSelection(desktop);
    desktop.pointer().moveTo(at(600, 300));
    desktop.pointer().down();
    desktop.pointer().moveTo(at(700, 400));
    desktop.press("Escape");
    // Keys and buttons come to the program by different connections, so a release at the same instant may overtake.
    desktop.waitForPanels(0);
    desktop.pointer().up();
    expectNothingHappened();

    EXPECT_TRUE(window.buttonPresses().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Desktops, AreaCapture,
    ::testing::Values(
        DesktopSetting{.name = "openbox"}, DesktopSetting{.name = "openboxPicom", .compositor = CompositorKind::plain},
        DesktopSetting{.name = "openboxFading", .compositor = CompositorKind::fading},
        DesktopSetting{.name = "xfwm4", .windowManager = WindowManagerKind::xfwm4},
        DesktopSetting{.name = "i3Picom", .windowManager = WindowManagerKind::i3, .compositor = CompositorKind::plain},
        DesktopSetting{.name = "openboxPicomScale2", .compositor = CompositorKind::plain, .scale = 2}),
    DesktopSetting::nameOf);

constexpr QRect mainScreen{0, 0, 1280, 810};
constexpr QRect sideScreen{1280, 0, 640, 810};
const QList<Monitor> twoMonitors = {{.name = "main", .frame = mainScreen, .primary = true},
                                    {.name = "side", .frame = sideScreen}};

TEST_F(DesktopTest, AnAreaOnTheSecondScreen)
{
    Desktop &desktop = start({.size = {1920, 810}, .compositor = CompositorKind::plain, .monitors = twoMonitors});
    const QImage both = desktop.paintBackground(knownPicture(desktop.server().size()));
    desktop.press("Super+Alt+2");
    desktop.waitForOverlays({mainScreen, sideScreen});
    desktop.pointer().drag({1400, 100}, {1700, 400});
    desktop.waitForClipboard();
    EXPECT_TRUE(samePicture(desktop.clipboardPicture(), both.copy(1400, 100, 300, 300)));
}

TEST_F(DesktopTest, AScreenUnpluggedDuringTheSelectionTakesItsOverlayWithIt)
{
    Desktop &desktop = start({.size = {1920, 810}, .compositor = CompositorKind::plain, .monitors = twoMonitors});
    const QImage both = desktop.paintBackground(knownPicture(desktop.server().size()));
    desktop.press("Super+Alt+2");
    desktop.waitForOverlays({mainScreen, sideScreen});

    desktop.server().setMonitors({twoMonitors.first()});
    desktop.waitForOverlays({mainScreen});
    desktop.pointer().drag({400, 100}, {700, 400});
    desktop.waitForClipboard();
    EXPECT_TRUE(samePicture(desktop.clipboardPicture(), both.copy(400, 100, 300, 300)));
    desktop.waitForPanels(1);
}

TEST_F(DesktopTest, ASecondShortcutDuringTheSelectionIsIgnored)
{
    Desktop &desktop = start();
    desktop.press("Super+Alt+2");
    desktop.waitForOverlays({QRect(QPoint(0, 0), desktop.server().size())});
    desktop.press("Super+Alt+1");
    EXPECT_TRUE(staysTrue([&] { return desktop.clipboard().ownerChanges() == 0 && desktop.panels().size() == 1; },
                          std::chrono::milliseconds(400)));
    desktop.press("Escape");
    desktop.waitForPanels(0);
    desktop.press("Super+Alt+1");
    desktop.waitForPanels(1);
}

} // namespace
} // namespace lumenfold::test
