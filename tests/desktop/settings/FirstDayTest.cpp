/// A person's first day with the program, and the next morning.
#include "tests/desktop/settings/SettingsDesktopTest.h"

#include <QDir>
#include <QImage>

#include <algorithm>

namespace lumenfold::test {
namespace {

class FirstDay : public SettingsDesktopTest {
protected:
    void connectWith(std::initializer_list<const char *> keys)
    {
        const auto isAsking = [this] {
            const QList<WindowInfo> windows = m_desktop->windowsOfProgram();
            return std::ranges::find(windows, QStringLiteral("Connect to LumenFold"), &WindowInfo::title) !=
                   windows.end();
        };
        waitUntil("the dialog to have the keys", [&] {
            return isAsking() && processOf(m_desktop->connection(), m_desktop->connection().focusedWindow()) ==
                                     m_desktop->program().pid();
        });
        for (const char *key : keys) {
            m_desktop->press(key);
        }
        m_desktop->press("Return");
        waitUntil("the dialog to close", [&] { return !isAsking(); });
    }

    /// With the panel of the desktop, which begins in the present folder.
    void chooseSubfolder(const AssistiveTechnology &technology, std::initializer_list<const char *> keys)
    {
        press(technology, QStringLiteral("push button"), QStringLiteral("Choose"));
        waitUntil("the panel to have the keys", [this] {
            const QList<WindowInfo> windows = m_desktop->windowsOfProgram();
            const auto panel = std::ranges::find(windows, QStringLiteral("Save Location"), &WindowInfo::title);
            return panel != windows.end() && m_desktop->connection().focusedWindow() == panel->id;
        });
        for (const char *key : keys) {
            m_desktop->press(key);
        }
        const QByteArray before = settings();
        m_desktop->press("Return");
        waitUntil("the folder to be stored", [&] { return settings() != before; });
    }

    void save(const AssistiveTechnology &technology)
    {
        const std::optional<AccessibleObject> card =
            find(technology, QStringLiteral("image"), QStringLiteral("Screenshot, 300 × 200 pixels"));
        ASSERT_TRUE(card);
        EXPECT_TRUE(technology.perform(m_desktop->program().pid(), *card, QStringLiteral("Save")));
    }

    static QStringList filesIn(const QString &folder) { return QDir(folder).entryList(QDir::Files); }
};

TEST_F(FirstDay, IsAsItWasTheNextMorning)
{
    Desktop &desktop = prepareOnline({.size = cardFriendlyScreen, .keyring = KeyringKind::empty});
    const AssistiveTechnology technology(desktop.environment());
    desktop.startProgram();
    connectWith({"d", "e", "m", "o", "minus", "k", "e", "y"});
    EXPECT_EQ(desktop.keyring().items().size(), 1);

    desktop.press("Super+Alt+1");
    desktop.waitForClipboard();
    EXPECT_EQ(desktop.clipboardPicture().size(), cardFriendlyScreen);
    captureArea("Super+Alt+2", 2);
    EXPECT_EQ(desktop.clipboardPicture().size(), QSize(300, 200));
    desktop.press("Super+Alt+3");
    desktop.waitForClipboard();
    EXPECT_EQ(desktop.clipboardPicture().size(), QSize(300, 200));
    desktop.waitForPanels(3);

    const QString shots = desktop.folders().pictures() + QStringLiteral("/shots");
    ASSERT_TRUE(QDir().mkpath(shots));
    openSettings();
    // The tabs, then the first recorder and its way back, then the one for areas.
    for (int step = 0; step < 4; ++step) {
        desktop.press("Tab");
    }
    record("Ctrl+Shift+F9");
    chooseSubfolder(technology, {"s", "h", "o", "t", "s"});
    EXPECT_TRUE(settings().contains("shots"));
    waitUntil("the settings window to have the keys again",
              [this] { return window() && m_desktop->connection().focusedWindow() == window()->id; });
    closeSettings();

    captureArea("Ctrl+Shift+F9", 4);
    save(technology);
    EXPECT_TRUE(waitFor([&] { return filesIn(shots).size() == 1; }));
    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});

    desktop.startProgram();
    desktop.waitForPanels(4);
    EXPECT_TRUE(staysTrue([&] { return desktop.windowsOfProgram().size() == desktop.panels().size(); },
                          std::chrono::seconds(1)))
        << "nobody is asked for a key again";
    captureArea("Ctrl+Shift+F9", 5);
    QDir(shots).removeRecursively();
    ASSERT_TRUE(QDir().mkpath(shots));
    save(technology);
    EXPECT_TRUE(waitFor([&] { return filesIn(shots).size() == 1; }));
    desktop.press("Super+Alt+3");
    desktop.waitForClipboard();
    EXPECT_EQ(desktop.clipboardPicture().size(), QSize(300, 200));
}

} // namespace
} // namespace lumenfold::test
