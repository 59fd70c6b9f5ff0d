/// The settings window of the shipped program, in the hands of people who use keys and of people who use an assistive
/// technology; and what it has changed, after the next start.
#include "tests/desktop/ProgramSettings.h"
#include "tests/desktop/accessibility/AssistiveTechnology.h"
#include "tests/support/desktop/CardFrames.h"
#include "tests/support/desktop/DesktopTest.h"

#include <algorithm>
#include <memory>

namespace lumenfold::test {
namespace {

const QString title = QStringLiteral("LumenFold Settings");

class Settings : public DesktopTest {
protected:
    /// Launches the program once more, as people do who look for a window of it.
    void openSettings()
    {
        const std::unique_ptr<Process> second = m_desktop->startSecondProgram();
        waitUntil("the settings window to have the keys",
                  [this] { return window().has_value() && m_desktop->connection().focusedWindow() == window()->id; });
    }

    [[nodiscard]] std::optional<WindowInfo> window() const
    {
        const QList<WindowInfo> windows = m_desktop->windowsOfProgram();
        const auto found = std::ranges::find(windows, title, &WindowInfo::title);
        return found == windows.end() ? std::nullopt : std::optional(*found);
    }

    void closeSettings()
    {
        m_desktop->press("Escape");
        waitUntil("the window to close", [this] { return !window().has_value(); });
    }

    /// With the recorder that the keyboard is at.
    void record(std::string_view keys)
    {
        const QByteArray before = settings();
        m_desktop->press("space");
        waitUntil("the recorder to hold the keyboard", [this] { return m_desktop->isKeyboardHeld(); });
        m_desktop->press(keys);
        waitUntil("the shortcut to be stored", [&] { return settings() != before; });
        waitUntil("the keyboard to be free", [this] { return !m_desktop->isKeyboardHeld(); });
    }

    /// By the recorded shortcut.
    void captureArea(int cardsAfterwards)
    {
        m_desktop->press("Ctrl+Shift+F9");
        m_desktop->waitForOverlays({QRect(QPoint(0, 0), m_desktop->server().size())});
        m_desktop->pointer().drag({600, 100}, {900, 300});
        m_desktop->waitForClipboard();
        m_desktop->waitForPanels(cardsAfterwards);
    }

    [[nodiscard]] QByteArray settings() const
    {
        QFile file(settingsFile(*m_desktop));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

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
    captureArea(1);

    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
    desktop.startProgram();
    desktop.waitForPanels(1);
    captureArea(2);
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
    const auto find = [&](const QString &role, const QString &name) {
        std::optional<AccessibleObject> found;
        (void)waitFor([&] {
            const QList<AccessibleObject> objects = technology.objectsOf(desktop.program().pid());
            const auto one = std::ranges::find_if(objects, [&](const AccessibleObject &object) {
                return object.role == role && object.name == name && object.isShowing();
            });
            if (one != objects.end()) {
                found = *one;
            }
            return found.has_value();
        });
        return found;
    };
    const auto press = [&](const std::optional<AccessibleObject> &object) {
        ASSERT_TRUE(object && !object->actions.isEmpty());
        EXPECT_TRUE(technology.perform(desktop.program().pid(), *object, object->actions.constFirst()));
    };
    const QString checkBox = QStringLiteral("check box");
    const QString login = QStringLiteral("Start LumenFold at login");
    EXPECT_TRUE(find(QStringLiteral("push button"), QStringLiteral("Capture full screen: Alt+Super+1")));
    EXPECT_TRUE(find(QStringLiteral("page tab"), QStringLiteral("Account")));
    EXPECT_FALSE(find(checkBox, login)->states.contains(QStringLiteral("checked")));
    press(find(checkBox, login));
    EXPECT_TRUE(waitFor([&] { return QFile::exists(autostartFile()); }));
    press(find(QStringLiteral("radio button"), QStringLiteral("Browser")));
    EXPECT_TRUE(waitFor([&] { return settings().contains("LumenFold.editorLocation=browser"); }));

    EXPECT_EQ(desktop.quitProgram(), Process::Exit{.status = 0});
    desktop.startProgram();
    openSettings();
    EXPECT_TRUE(find(checkBox, login)->states.contains(QStringLiteral("checked")));
    EXPECT_TRUE(
        find(QStringLiteral("radio button"), QStringLiteral("Browser"))->states.contains(QStringLiteral("checked")));
    press(find(checkBox, login));
    EXPECT_TRUE(waitFor([&] { return !QFile::exists(autostartFile()); }));
}

} // namespace
} // namespace lumenfold::test
