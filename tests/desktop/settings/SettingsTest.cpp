/// The settings window of the shipped program, in the hands of people who use keys and of people who use an assistive
/// technology; and what it has changed, after the next start.
#include "tests/desktop/settings/SettingsDesktopTest.h"

#include <QFile>

#include <algorithm>

namespace lumenfold::test {
namespace {

class Settings : public SettingsDesktopTest {
protected:
    [[nodiscard]] QString autostartFile() const
    {
        return m_desktop->folders().config() + QStringLiteral("/autostart/org.lumenfold.LumenFold.desktop");
    }
};

TEST_F(Settings, AShortcutIsRecordedAndCapturesAlsoAfterARestart)
{
    Desktop &desktop = start({.size = cardFriendlyScreen});
    openSettings();
    EXPECT_EQ(window()->frame.size(), QSize(520, 460));
    // The tabs, then the first recorder and its way back; the window manager has this combination for itself.
    for (int step = 0; step < 4; ++step) {
        desktop.press("Tab");
    }
    record("Alt+F4");
    EXPECT_TRUE(window().has_value());
    // Nobody may take what the window manager has, so another one is recorded to capture with.
    desktop.press("Tab");
    record("Ctrl+Shift+F9");
    closeSettings();
    captureArea("Ctrl+Shift+F9", 1);

    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
    desktop.startProgram();
    desktop.waitForPanels(1);
    captureArea("Ctrl+Shift+F9", 2);
    // The one that it came with is free again.
    TestWindow &other = desktop.openWindow();
    other.focus();
    desktop.press("Super+Alt+2");
    EXPECT_TRUE(waitFor([&] {
        const QList<TestWindow::KeyPress> presses = other.keyPresses();
        return std::ranges::find(presses, desktop.keyboard().codeOf("2"), &TestWindow::KeyPress::code) != presses.end();
    }));
}

TEST_F(Settings, AssistiveTechnologiesFindAndChangeThem)
{
    Desktop &desktop = prepare({.size = cardFriendlyScreen});
    const AssistiveTechnology technology(desktop.environment());
    desktop.startProgram();
    openSettings();
    const QString checkBox = QStringLiteral("check box");
    const QString login = QStringLiteral("Start LumenFold at login");
    EXPECT_TRUE(find(technology, QStringLiteral("push button"), QStringLiteral("Capture full screen: Alt+Super+1")));
    EXPECT_TRUE(find(technology, QStringLiteral("page tab"), QStringLiteral("Account")));
    EXPECT_FALSE(find(technology, checkBox, login)->states.contains(QStringLiteral("checked")));
    press(technology, checkBox, login);
    EXPECT_TRUE(waitFor([&] { return QFile::exists(autostartFile()); }));
    press(technology, QStringLiteral("radio button"), QStringLiteral("Browser"));
    EXPECT_TRUE(waitFor([&] { return settings().contains("LumenFold.editorLocation=browser"); }));

    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
    desktop.startProgram();
    openSettings();
    EXPECT_TRUE(find(technology, checkBox, login)->states.contains(QStringLiteral("checked")));
    EXPECT_TRUE(find(technology, QStringLiteral("radio button"), QStringLiteral("Browser"))
                    ->states.contains(QStringLiteral("checked")));
    press(technology, checkBox, login);
    EXPECT_TRUE(waitFor([&] { return !QFile::exists(autostartFile()); }));
}

} // namespace
} // namespace lumenfold::test
