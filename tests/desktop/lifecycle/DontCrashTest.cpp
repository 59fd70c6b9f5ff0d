/// What must not bring the program down, nor the desktop with it.
#include "tests/support/desktop/DesktopTest.h"

#include <csignal>

namespace lumenfold::test {
namespace {

using DontCrash = DesktopTest;

TEST_F(DontCrash, dont_crash_when_another_program_destroys_a_card)
{
    Desktop &desktop = start();
    desktop.press("Super+Alt+1");
    const xcb_window_t card = desktop.waitForPanels(1).first().id;
    xcb_destroy_window(desktop.connection().get(), card);
    desktop.connection().sync();

    // The next card makes the program move the first, which is an error at the server.
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    EXPECT_FALSE(desktop.clipboardPicture().isNull());
    EXPECT_TRUE(desktop.isProgramRunning());
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
}

TEST_F(DontCrash, dont_crash_when_windows_come_and_go_during_captures)
{
    Desktop &desktop = start();
    for (int round = 1; round <= 5; ++round) {
        desktop.press("Super+Alt+1");
        waitUntil("the capture", [&] {
            TestWindow &window = desktop.openWindow({.frame = {600, 100, 200, 150}});
            desktop.closeWindow(window);
            return desktop.clipboard().ownerChanges() >= round;
        });
        // The one before has to be over.
        desktop.waitForPanels(round);
    }
    EXPECT_TRUE(desktop.isProgramRunning());
}

TEST_F(DontCrash, the_keyboard_is_free_again_when_it_is_killed_with_its_key_held)
{
    Desktop &desktop = start();
    TestWindow &window = desktop.openWindow();
    window.focus();
    desktop.keyboard().down("Super");
    desktop.keyboard().down("Alt");
    desktop.keyboard().down("1");
    desktop.program().sendSignal(SIGKILL);
    ASSERT_EQ(desktop.program().waitForExit(), (Process::Exit{.status = -1, .signal = SIGKILL}));
    desktop.keyboard().up("1");
    desktop.keyboard().up("Alt");
    desktop.keyboard().up("Super");

    window.forgetInput();
    desktop.press("a");
    EXPECT_TRUE(waitFor([&] { return window.keyPresses().size() == 1; }));

    // Nothing of it is left that would keep the next one from starting.
    desktop.startProgram();
    desktop.press("Super+Alt+1");
    desktop.waitForPanels(1);
}

TEST_F(DontCrash, dont_crash_when_the_compositor_goes_and_comes)
{
    Desktop &desktop = start({.compositor = CompositorKind::plain});
    const QImage background = desktop.paintBackground(knownPicture(desktop.server().size()));
    for (int count = 1; count <= 4; ++count) {
        desktop.setCompositor(count % 2 == 0 ? CompositorKind::plain : CompositorKind::none);
        desktop.waitForStillPicture();
        desktop.press("Super+Alt+1");
        desktop.waitForClipboard();
        EXPECT_TRUE(samePicture(desktop.clipboardPicture(), background)) << "capture " << count;
        desktop.waitForPanels(count);
    }
}

TEST_F(DontCrash, dont_crash_when_the_only_other_screen_goes)
{
    const Monitor main{.name = "main", .frame = {0, 0, 640, 800}};
    const Monitor side{.name = "side", .frame = {640, 0, 640, 800}, .primary = true};
    Desktop &desktop = start({.monitors = {main, side}});
    desktop.press("Super+Alt+1");
    desktop.waitForPanels(1);
    desktop.server().setMonitors({main});
    desktop.server().setMonitors({side});
    desktop.server().setMonitors({});
    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    EXPECT_TRUE(waitFor([&] { return desktop.clipboardPicture().size() == QSize(1280, 800); }));
    EXPECT_TRUE(desktop.isProgramRunning());
}

} // namespace
} // namespace lumenfold::test
