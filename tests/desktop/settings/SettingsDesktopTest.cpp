#include "tests/desktop/settings/SettingsDesktopTest.h"

#include "tests/desktop/ProgramSettings.h"

#include <QFile>

#include <algorithm>
#include <memory>

namespace lumenfold::test {

void SettingsDesktopTest::openSettings()
{
    const std::unique_ptr<Process> second = m_desktop->startSecondProgram();
    waitUntil("the settings window to have the keys",
              [this] { return window().has_value() && m_desktop->connection().focusedWindow() == window()->id; });
}

std::optional<WindowInfo> SettingsDesktopTest::window() const
{
    const QList<WindowInfo> windows = m_desktop->windowsOfProgram();
    const auto found = std::ranges::find(windows, QStringLiteral("LumenFold Settings"), &WindowInfo::title);
    return found == windows.end() ? std::nullopt : std::optional(*found);
}

void SettingsDesktopTest::closeSettings()
{
    const auto isClosed = [this] { return !window().has_value(); };
    // The toolkit may not have heard yet that the window has the keys again.
    for (int attempt = 0; attempt < 3 && !isClosed(); ++attempt) {
        m_desktop->press("Escape");
        (void)waitFor(isClosed, std::chrono::seconds(3));
    }
    waitUntil("the window to close", isClosed);
}

void SettingsDesktopTest::record(std::string_view keys)
{
    const QByteArray before = settings();
    m_desktop->press("space");
    waitUntil("the recorder to hold the keyboard", [this] { return m_desktop->isKeyboardHeld(); });
    m_desktop->press(keys);
    waitUntil("the shortcut to be stored", [&] { return settings() != before; });
    waitUntil("the keyboard to be free", [this] { return !m_desktop->isKeyboardHeld(); });
}

void SettingsDesktopTest::captureArea(std::string_view shortcut, int cardsAfterwards)
{
    m_desktop->press(shortcut);
    m_desktop->waitForOverlays({QRect(QPoint(0, 0), m_desktop->server().size())});
    m_desktop->pointer().drag({600, 100}, {900, 300});
    m_desktop->waitForClipboard();
    m_desktop->waitForPanels(cardsAfterwards);
}

QByteArray SettingsDesktopTest::settings() const
{
    QFile file(settingsFile(*m_desktop));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::optional<AccessibleObject> SettingsDesktopTest::find(const AssistiveTechnology &technology, const QString &role,
                                                          const QString &name)
{
    std::optional<AccessibleObject> found;
    (void)waitFor([&] {
        const QList<AccessibleObject> objects = technology.objectsOf(m_desktop->program().pid());
        const auto one = std::ranges::find_if(objects, [&](const AccessibleObject &object) {
            return object.role == role && object.name == name && object.isShowing();
        });
        if (one != objects.end()) {
            found = *one;
        }
        return found.has_value();
    });
    return found;
}

void SettingsDesktopTest::press(const AssistiveTechnology &technology, const QString &role, const QString &name)
{
    const std::optional<AccessibleObject> object = find(technology, role, name);
    ASSERT_TRUE(object && !object->actions.isEmpty()) << qPrintable(name);
    EXPECT_TRUE(technology.perform(m_desktop->program().pid(), *object, object->actions.constFirst()));
}

} // namespace lumenfold::test
