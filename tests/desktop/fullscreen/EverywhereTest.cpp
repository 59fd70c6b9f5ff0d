/// One full-screen capture on every kind of desktop.
#include "tests/desktop/DesktopSetting.h"
#include "tests/support/desktop/DesktopTest.h"

namespace lumenfold::test {
namespace {

class Everywhere : public DesktopSettingTest {};

TEST_P(Everywhere, TheScreenIsOnTheClipboardAndACardStands)
{
    const DesktopSetting setting = GetParam();
    Desktop &desktop = start(setting.options());
    desktop.paintBackground(knownPicture(desktop.server().size()));
    TestWindow &window = desktop.openWindow({.frame = {500, 100, 400, 300}});
    window.focus();
    window.forgetInput();
    const QImage screen = desktop.waitForStillPicture();

    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    EXPECT_TRUE(samePicture(desktop.clipboardPicture(), screen));

    const QList<WindowInfo> cards = desktop.waitForPanels(1);
    const CardColumn column{.workArea = desktop.workArea(), .scale = setting.scale};
    EXPECT_EQ(cards.first().frame, column.slot(0));
    const QImage withCard = desktop.waitForStillPicture();
    EXPECT_GT(differingPixels(withCard, screen), 0);
    EXPECT_TRUE(cards.first().frame.contains(differingRegion(withCard, screen)));

    // The window in front noticed nothing: it has the keyboard, and the key never reached it.
    EXPECT_TRUE(window.hasFocus());
    EXPECT_EQ(window.focusLosses(), 0);
    const xcb_keycode_t one = desktop.keyboard().codeOf("1");
    const QList<TestWindow::KeyPress> keys = window.keyPresses();
    EXPECT_TRUE(std::none_of(keys.begin(), keys.end(), [one](const auto &press) { return press.code == one; }));
    desktop.press("1");
    EXPECT_TRUE(waitFor([&] { return !window.keyPresses().isEmpty() && window.keyPresses().last().code == one; }));
}

INSTANTIATE_TEST_SUITE_P(
    Desktops, Everywhere,
    ::testing::Values(
        DesktopSetting{.name = "openbox"}, DesktopSetting{.name = "openboxPicom", .compositor = CompositorKind::plain},
        DesktopSetting{.name = "openboxFading", .compositor = CompositorKind::fading},
        DesktopSetting{.name = "xfwm4", .windowManager = WindowManagerKind::xfwm4},
        DesktopSetting{.name = "i3Picom", .windowManager = WindowManagerKind::i3, .compositor = CompositorKind::plain},
        DesktopSetting{.name = "noWindowManager", .windowManager = WindowManagerKind::none},
        DesktopSetting{.name = "openboxScale2", .scale = 2},
        DesktopSetting{.name = "openboxPicomScale2", .compositor = CompositorKind::plain, .scale = 2}),
    DesktopSetting::nameOf);

TEST_F(DesktopTest, OfTwoScreensTheOneUnderThePointerIsCaptured)
{
    Desktop &desktop = start({.size = {1280 + 640, 810},
                              .monitors = {{.name = "main", .frame = {0, 0, 1280, 810}, .primary = true},
                                           {.name = "side", .frame = {1280, 0, 640, 810}}}});
    const QImage both = desktop.paintBackground(knownPicture(desktop.server().size()));

    desktop.pointer().moveTo({1500, 300});
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    EXPECT_TRUE(samePicture(desktop.clipboardPicture(), both.copy(1280, 0, 640, 810)));
    desktop.waitForPanels(1);

    desktop.pointer().moveTo({900, 300});
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    EXPECT_TRUE(samePicture(desktop.clipboardPicture(), both.copy(0, 0, 1280, 810)));

    // The column is on the main screen, whichever was captured.
    const QList<WindowInfo> cards = desktop.waitForPanels(2);
    const CardColumn column;
    EXPECT_EQ(cards.first().frame, column.slot(0));
    EXPECT_EQ(cards.last().frame, column.slot(1));
}

TEST_F(DesktopTest, APanelOfTheDesktopIsKeptClear)
{
    Desktop &desktop = prepare({.size = {1280 + 40, 810 + 30}});
    // Docks at the left and at the bottom, as desktops have them.
    desktop.openWindow({.frame = {0, 0, 40, 840}, .kind = WindowKind::dock, .strut = {40, 0, 0, 0}});
    desktop.openWindow({.frame = {40, 810, 1280, 30}, .kind = WindowKind::dock, .strut = {0, 0, 0, 30}});
    waitUntil("the work area", [&] { return desktop.workArea() == QRect(40, 0, 1280, 810); });
    desktop.startProgram();

    desktop.press("Super+Alt+1");
    const CardColumn column{.workArea = {40, 0, 1280, 810}};
    EXPECT_EQ(desktop.waitForPanels(1).first().frame, column.slot(0));
}

} // namespace
} // namespace lumenfold::test
