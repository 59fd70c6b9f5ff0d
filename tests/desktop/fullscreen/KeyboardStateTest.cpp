/// The shortcut in every state that a keyboard can be in.
#include "tests/support/desktop/DesktopTest.h"

namespace lumenfold::test {
namespace {

class KeyboardState : public DesktopTest, public ::testing::WithParamInterface<std::vector<const char *>> {};

TEST_P(KeyboardState, LocksDoNotMatter)
{
    Desktop &desktop = start();
    for (const char *lock : GetParam()) {
        desktop.press(lock);
    }
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    EXPECT_FALSE(desktop.clipboardPicture().isNull());
    desktop.waitForPanels(1);
}

INSTANTIATE_TEST_SUITE_P(Locks, KeyboardState,
                         ::testing::Values(std::vector<const char *>{"Caps_Lock"},
                                           std::vector<const char *>{"Num_Lock"},
                                           std::vector<const char *>{"Caps_Lock", "Num_Lock"}));

TEST_F(DesktopTest, OtherKeysReachTheWindowInFrontUntouched)
{
    Desktop &desktop = start();
    TestWindow &window = desktop.openWindow();
    window.focus();
    window.forgetInput();
    for (const char *key : {"Shift+Super+Alt+1", "Alt+1", "Super+1", "Super+Alt+4", "a", "Ctrl+z"}) {
        desktop.press(key);
    }
    QList<xcb_keycode_t> expected;
    for (const char *key : {"Shift_L", "Super_L", "Alt_L", "1", "Alt_L", "1", "Super_L", "1", "Super_L", "Alt_L", "4",
                            "a", "Control_L", "z"}) {
        expected.append(desktop.keyboard().codeOf(key));
    }
    const auto codes = [&] {
        QList<xcb_keycode_t> arrived;
        const QList<TestWindow::KeyPress> presses = window.keyPresses();
        for (const TestWindow::KeyPress &press : presses) {
            arrived.append(press.code);
        }
        return arrived;
    };
    EXPECT_TRUE(waitFor([&] { return codes().size() >= expected.size(); }));
    EXPECT_EQ(codes(), expected);
    EXPECT_EQ(desktop.clipboard().ownerChanges(), 0);
}

TEST_F(DesktopTest, AHeldShortcutCapturesOnce)
{
    Desktop &desktop = start();
    desktop.keyboard().down("Super");
    desktop.keyboard().down("Alt");
    desktop.keyboard().down("1");
    desktop.waitForClipboard();
    desktop.waitForPanels(1);
    // Longer than the delay before the server repeats a key (660 ms).
    EXPECT_TRUE(staysTrue([&] { return desktop.panels().size() == 1; }, std::chrono::milliseconds(1'000)));
    desktop.keyboard().up("1");
    desktop.keyboard().up("Alt");
    desktop.keyboard().up("Super");

    desktop.press("Super+Alt+1");
    desktop.waitForPanels(2);
}

} // namespace
} // namespace lumenfold::test
