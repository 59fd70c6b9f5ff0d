#include "tests/components/settings/SettingsWindowFixture.h"

#include "platform/keyboard/x11/X11KeyboardRouter.h"
#include "shortcuts/recorder/ShortcutRecorderButton.h"
#include "shortcuts/recorder/ShortcutRecorderView.h"
#include "tests/support/desktop/GuiTest.h"
#include "tests/support/desktop/TestWindow.h"
#include "tests/support/desktop/Wait.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

namespace lumenfold::test {
namespace {

using Action = ShortcutStore::Action;

const QString typing = QStringLiteral("Type shortcut…");

ShortcutRecorderButton *recorder(Action action)
{
    return SettingsDesk::parts<ShortcutRecorderButton>().at(static_cast<qsizetype>(action));
}

bool shows(Action action, const QString &title)
{
    return waitFor([&] { return recorder(action)->text() == title; });
}

/// The recorder with the keyboard of the session in its hands, on a desktop whose window manager has keys of its own.
class RecorderTest : public SettingsWindowTest {
protected:
    RecorderTest() : m_router(x11::X11KeyboardRouter::start(guiTestServer().display()))
    {
        desk = std::make_unique<SettingsDesk>(&m_router->taps());
    }
    ~RecorderTest() override
    {
        // Before the keyboard.
        desk.reset();
    }

    void startRecording(Action action)
    {
        // Whoever held it before lets go when the keys are up.
        ASSERT_TRUE(waitFor([] { return !isKeyboardHeld(); }));
        click(recorder(action));
        ASSERT_TRUE(shows(action, typing));
        // The tap is asked for, and the server gives the keyboard a moment later.
        ASSERT_TRUE(waitFor([this] { return isKeyboardHeld(); }));
    }

    /// Tries to take the keyboard.
    [[nodiscard]] static bool isKeyboardHeld()
    {
        const XConnection other(guiTestServer().display());
        const Reply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(
            other.get(),
            xcb_grab_keyboard(other.get(), 0, other.root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
            nullptr));
        return reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
    }

    [[nodiscard]] bool hasEnded() const
    {
        return waitFor([this] { return !desk->recordings.empty() && !desk->recordings.back(); });
    }

    std::unique_ptr<x11::X11KeyboardRouter> m_router;
};

TEST_F(RecorderTest, ACombinationIsRecordedStoredAndShown)
{
    present();
    startRecording(Action::area);
    EXPECT_EQ(desk->recordings, std::vector{true});
    keyboard.press("Super+Alt+3");
    ASSERT_TRUE(shows(Action::area, QStringLiteral("⌥⌘3")));
    EXPECT_EQ(desk->shortcuts.shortcut(Action::area), (Shortcut{20, 0x0900, QStringLiteral("⌥⌘3")}));
    EXPECT_EQ(desk->recordings, (std::vector{true, false}));
    EXPECT_FALSE(recorder(Action::area)->hasFocus());
    // Another action has it already; now both do.
    EXPECT_EQ(desk->shortcuts.shortcut(Action::lastArea).display, u"⌥⌘3");
    EXPECT_TRUE(waitFor([] { return !isKeyboardHeld(); }));

    startRecording(Action::undo);
    keyboard.press("Shift+1");
    ASSERT_TRUE(shows(Action::undo, QStringLiteral("⇧1")));
    EXPECT_EQ(desk->shortcuts.shortcut(Action::undo), (Shortcut{18, 0x0200, QStringLiteral("⇧1")}));
}

TEST_F(RecorderTest, WhatTheWindowManagerHasTakenIsRecordedAllTheSame)
{
    present();
    startRecording(Action::fullScreen);
    keyboard.press("Alt+F4");
    ASSERT_TRUE(shows(Action::fullScreen, QStringLiteral("⌥F4")));
    EXPECT_EQ(desk->shortcuts.shortcut(Action::fullScreen), (Shortcut{118, 0x0800, QStringLiteral("⌥F4")}));
    EXPECT_TRUE(SettingsDesk::window()->isVisible());
    startRecording(Action::fullScreen);
    keyboard.press("Super+d");
    ASSERT_TRUE(shows(Action::fullScreen, QStringLiteral("⌘D")));
    EXPECT_TRUE(SettingsDesk::window()->isVisible());

    // They are the window manager's indeed.
    EXPECT_TRUE(waitFor([] { return !isKeyboardHeld(); }));
    keyboard.press("Alt+F4");
    EXPECT_TRUE(waitFor([] { return !SettingsDesk::window()->isVisible(); }));
}

TEST_F(RecorderTest, WhatTheWindowItselfHasAUseForIsRecordedToo)
{
    present();
    for (const char *keys : {"Ctrl+Tab", "Ctrl+w", "Shift+Tab", "Ctrl+Return"}) {
        startRecording(Action::area);
        keyboard.press(keys);
        ASSERT_TRUE(hasEnded()) << keys;
        EXPECT_TRUE(SettingsDesk::window()->isVisible()) << keys;
    }
    EXPECT_EQ(recorder(Action::area)->text(), u"⌃↩");
}

TEST_F(RecorderTest, AKeyAloneBeepsAndRecordingGoesOn)
{
    present();
    startRecording(Action::area);
    keyboard.press("a");
    EXPECT_TRUE(waitFor([this] { return desk->workspace.beeps == 1; }));
    EXPECT_EQ(recorder(Action::area)->text(), typing);
    keyboard.press("Tab");
    EXPECT_TRUE(waitFor([this] { return desk->workspace.beeps == 2; }));
    EXPECT_TRUE(recorder(Action::area)->recorder().isRecording());
    EXPECT_TRUE(desk->defaults.writes().isEmpty());
}

TEST_F(RecorderTest, EscapeGivesUpAndIsNeverRecorded)
{
    present();
    for (const char *keys : {"Escape", "Super+Escape"}) {
        startRecording(Action::area);
        keyboard.press(keys);
        EXPECT_TRUE(shows(Action::area, QStringLiteral("⌥⌘2"))) << keys;
        EXPECT_FALSE(desk->recordings.back());
        EXPECT_TRUE(SettingsDesk::window()->isVisible()) << "it was the recorder's";
    }
    EXPECT_TRUE(desk->defaults.writes().isEmpty());
}

TEST_F(RecorderTest, AClickElsewhereEndsRecording)
{
    present();
    startRecording(Action::area);
    click(recorder(Action::undo));
    ASSERT_TRUE(shows(Action::undo, typing));
    EXPECT_EQ(recorder(Action::area)->text(), u"⌥⌘2");
    EXPECT_EQ(desk->recordings, (std::vector{true, false, true}));

    // Also beside all controls.
    click(SettingsDesk::part<QLabel>(QStringLiteral("Shortcuts")));
    EXPECT_TRUE(shows(Action::undo, QStringLiteral("⌘Z")));
    EXPECT_TRUE(hasEnded());
    EXPECT_TRUE(desk->defaults.writes().isEmpty());
}

TEST_F(RecorderTest, AnotherTabOrAClosedWindowEndsRecording)
{
    present();
    startRecording(Action::area);
    SettingsDesk::showTab(QStringLiteral("Account"));
    EXPECT_TRUE(hasEnded());
    SettingsDesk::showTab(QStringLiteral("General"));
    startRecording(Action::area);
    SettingsDesk::window()->close();
    EXPECT_TRUE(hasEnded());
    EXPECT_TRUE(waitFor([] { return !isKeyboardHeld(); }));
}

TEST_F(RecorderTest, AnotherProgramThatGetsTheFocusEndsRecording)
{
    present();
    startRecording(Action::area);
    TestWindow other(guiTestServer(), {.frame = {0, 0, 60, 60}});
    other.focus();
    EXPECT_TRUE(hasEnded());
    EXPECT_TRUE(shows(Action::area, QStringLiteral("⌥⌘2")));
    EXPECT_TRUE(waitFor([] { return !isKeyboardHeld(); }));
}

TEST_F(RecorderTest, AWindowThatGoesWhileItRecordsLetsTheKeyboardGo)
{
    present();
    startRecording(Action::area);
    desk->controller.reset();
    EXPECT_TRUE(waitFor([] { return !isKeyboardHeld(); }));
}

TEST_F(RecorderTest, TheKeyboardAloneIsEnough)
{
    present();
    recorder(Action::lastArea)->setFocus(Qt::TabFocusReason);
    keyboard.press("space");
    ASSERT_TRUE(shows(Action::lastArea, typing));
    ASSERT_TRUE(waitFor([] { return isKeyboardHeld(); }));
    keyboard.press("Ctrl+Shift+F5");
    ASSERT_TRUE(shows(Action::lastArea, QStringLiteral("⌃⇧F5")));
    ASSERT_TRUE(waitFor([] { return !isKeyboardHeld(); }));
    // The next control is where the keyboard was.
    keyboard.press("Tab");
    EXPECT_TRUE(hasFocus(recorder(Action::lastArea)));
    keyboard.press("Tab");
    ASSERT_TRUE(waitFor([] { return qobject_cast<QToolButton *>(QApplication::focusWidget()) != nullptr; }));
    keyboard.press("space");
    EXPECT_TRUE(shows(Action::lastArea, QStringLiteral("⌥⌘3")));
    EXPECT_FALSE(desk->defaults.contains(QStringLiteral("LumenFold.shortcut.lastArea")));
}

TEST_F(RecorderTest, AResetElsewhereShowsAtOnce)
{
    present();
    desk->shortcuts.set({0, 0x1000, QStringLiteral("⌃A")}, Action::area);
    EXPECT_EQ(recorder(Action::area)->text(), u"⌃A");
    EXPECT_EQ(recorder(Action::area)->toolTip(), u"Ctrl+A");
    EXPECT_EQ(recorder(Action::area)->accessibleName(), u"Capture area: Ctrl+A");
    desk->shortcuts.reset(Action::area);
    EXPECT_EQ(recorder(Action::area)->text(), u"⌥⌘2");
}

/// With a tap of the test's own.
class RecorderWithoutKeyboard : public SettingsWindowTest {};

TEST_F(RecorderWithoutKeyboard, WithoutPermissionOneClickIsOneAlertAndHotkeysStaySuspended)
{
    desk->fakeTaps.setAvailable(false);
    present();
    click(recorder(Action::area));
    ASSERT_TRUE(shows(Action::area, QStringLiteral("Permission needed")));
    EXPECT_EQ(desk->alerts.upCount(), 1);
    EXPECT_EQ(desk->recordings, (std::vector{false, true}));
    recorder(Action::area)->click();
    EXPECT_EQ(desk->alerts.shown.size(), 1);
    EXPECT_TRUE(desk->alerts.answer(alertFirstButtonReturn + 1));
    EXPECT_TRUE(desk->recordings.back());
    EXPECT_TRUE(desk->workspace.openedAddresses.isEmpty());

    // The next recording that ends brings them back.
    recorder(Action::area)->clearFocus();
    EXPECT_FALSE(desk->recordings.back());
    EXPECT_EQ(recorder(Action::area)->text(), u"⌥⌘2");
}

TEST_F(RecorderWithoutKeyboard, TheTitleSaysSoUntilAShortcutIsStoredAnew)
{
    desk->fakeTaps.setAvailable(false);
    present();
    click(recorder(Action::area));
    ASSERT_TRUE(shows(Action::area, QStringLiteral("Permission needed")));
    EXPECT_TRUE(desk->alerts.answer(alertFirstButtonReturn));
    EXPECT_EQ(desk->workspace.openedAddresses.size(), 1);
    EXPECT_EQ(recorder(Action::area)->text(), u"Permission needed");
    desk->shortcuts.reset(Action::undo);
    EXPECT_EQ(recorder(Action::area)->text(), u"⌥⌘2");
}

TEST_F(RecorderWithoutKeyboard, KeysThatReachTheButtonAreRecorded)
{
    present();
    struct Case {
        const char *keys;
        Shortcut recorded;
    };
    for (const Case &each :
         {Case{"Super+Alt+3", {20, 0x0900, QStringLiteral("⌥⌘3")}}, Case{"Shift+1", {18, 0x0200, QStringLiteral("⇧1")}},
          Case{"Ctrl+a", {0, 0x1000, QStringLiteral("⌃A")}}, Case{"Ctrl+Tab", {48, 0x1000, QStringLiteral("⌃⇥")}},
          Case{"Ctrl+Shift+w", {13, 0x1200, QStringLiteral("⌃⇧W")}},
          Case{"Shift+F5", {96, 0x0200, QStringLiteral("⇧F5")}},
          Case{"Ctrl+space", {49, 0x1000, QStringLiteral("⌃Space")}}}) {
        recorder(Action::area)->click();
        ASSERT_TRUE(hasFocus(recorder(Action::area)));
        keyboard.press(each.keys);
        EXPECT_TRUE(waitFor([this] { return !desk->recordings.back(); })) << each.keys;
        EXPECT_EQ(desk->shortcuts.shortcut(Action::area), each.recorded) << each.keys;
    }
    recorder(Action::area)->click();
    keyboard.press("space");
    EXPECT_TRUE(waitFor([this] { return desk->workspace.beeps == 1; }));
    EXPECT_TRUE(recorder(Action::area)->recorder().isRecording());
    keyboard.press("Escape");
    EXPECT_TRUE(waitFor([] { return !recorder(Action::area)->recorder().isRecording(); }));
    EXPECT_TRUE(SettingsDesk::window()->isVisible());
}

} // namespace
} // namespace lumenfold::test
