#include "tests/components/keyboard/OtherClient.h"
#include "tests/components/keyboard/RouterTest.h"

#include "tests/support/desktop/Process.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/unit/LogWatch.h"

#include <QFile>
#include <QTemporaryDir>

#include <xcb/xproto.h>

namespace lumenfold::test {
namespace {

/// The keyboard changes under the router while its hotkeys are registered.
class KeyboardChanges : public RouterTest {
protected:
    void run(const QString &program, const QStringList &arguments)
    {
        Process process({.program = program,
                         .arguments = arguments,
                         .environment = m_server.clientEnvironment(),
                         .logFile = m_folder.filePath(QStringLiteral("log"))});
        EXPECT_EQ(process.waitForExit(), (Process::Exit{.status = 0, .signal = 0})) << process.log().toStdString();
    }

    /// Strikes the keys until the hotkey has fired: the router needs a moment to see a change.
    [[nodiscard]] bool firesSoon(std::uint32_t id, std::string_view keys)
    {
        const int before = pressed(id);
        return waitFor([&] {
            m_keyboard.press(keys);
            return waitFor([&] { return pressed(id) > before; }, std::chrono::milliseconds(50));
        });
    }

    QTemporaryDir m_folder;
};

TEST_F(KeyboardChanges, HotkeysKeepTheirPlaceInAnotherLayout)
{
    ASSERT_EQ(registerHotKey(1, keyCodes::q), noHotKeyError);
    run(QStringLiteral("setxkbmap"), {QStringLiteral("fr")});
    // The key that was Q types "a" now.
    EXPECT_TRUE(firesSoon(1, "Super+Alt+a"));

    const auto tap = watchingTap(TapScope::hotKeys, TapDisposition::swallow);
    EXPECT_TRUE(waitFor([&] {
        m_keyboard.press("Super+Alt+a");
        return waitFor([&] { return !m_seen.empty(); }, std::chrono::milliseconds(50)) &&
               m_seen.back().charactersIgnoringModifiers == QStringLiteral("a");
    })) << "the label follows the layout";
    EXPECT_EQ(m_seen.back().keyCode, keyCodes::q);
}

TEST_F(KeyboardChanges, HotkeysFireInTheSecondLayout)
{
    run(QStringLiteral("setxkbmap"),
        {QStringLiteral("us,ru"), QStringLiteral("-option"), QStringLiteral("grp:sclk_toggle")});
    ASSERT_EQ(registerHotKey(1, keyCodes::a), noHotKeyError);
    m_keyboard.press("ISO_Next_Group");
    m_keyboard.press("Super+Alt+a");
    EXPECT_TRUE(waitForPress(1));

    const auto tap = watchingTap(TapScope::hotKeys, TapDisposition::swallow);
    EXPECT_TRUE(waitFor([&] {
        m_keyboard.press("Super+Alt+a");
        return waitFor([&] { return !m_seen.empty(); }, std::chrono::milliseconds(50)) &&
               m_seen.back().charactersIgnoringModifiers == QStringLiteral("ф");
    }));
    EXPECT_EQ(m_seen.back().keyCode, keyCodes::a);
}

TEST_F(KeyboardChanges, NumLockMayMoveToAnotherModifier)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    run(QStringLiteral("xmodmap"),
        {QStringLiteral("-e"), QStringLiteral("clear mod2"), QStringLiteral("-e"), QStringLiteral("clear mod3"),
         QStringLiteral("-e"), QStringLiteral("add mod3 = Num_Lock")});
    m_keyboard.press("Num_Lock");
    EXPECT_TRUE(firesSoon(1, "Super+Alt+1"));
    m_front.forgetInput();
    m_keyboard.press("a");
    EXPECT_TRUE(waitForTyped(QStringLiteral("a")));
    EXPECT_EQ(m_front.keyPresses().back().state & XCB_MOD_MASK_3, XCB_MOD_MASK_3) << "Num Lock is on, and is Mod3";
}

TEST_F(KeyboardChanges, AKeyMayMoveToAnotherKeycode)
{
    ASSERT_EQ(registerHotKey(1, keyCodes::digit1), noHotKeyError);
    const QString file = m_folder.filePath(QStringLiteral("keymap.xkb"));
    run(QStringLiteral("xkbcomp"), {QStringLiteral("-w0"), QString::fromLatin1(m_server.display()), file});
    QFile keymap(file);
    ASSERT_TRUE(keymap.open(QIODevice::ReadOnly));
    QByteArray text = keymap.readAll();
    keymap.close();
    ASSERT_TRUE(text.contains("<AE01> = 10;") && text.contains("<AE02> = 11;"));
    text.replace("<AE01> = 10;", "<AE01> = 11 ;").replace("<AE02> = 11;", "<AE02> = 10;");
    ASSERT_TRUE(keymap.open(QIODevice::WriteOnly));
    keymap.write(text);
    keymap.close();
    run(QStringLiteral("xkbcomp"), {QStringLiteral("-w0"), file, QString::fromLatin1(m_server.display())});

    ASSERT_TRUE(waitFor([&] { return m_keyboard.codeOf("1") == 11; }));
    EXPECT_TRUE(firesSoon(1, "Super+Alt+1"));
    m_front.forgetInput();
    m_keyboard.press("Super+Alt+2");
    EXPECT_EQ(typedBeforeMarker(), QStringLiteral("2")) << "the old keycode is free again";
}

TEST_F(KeyboardChanges, AHotkeyThatIsTakenInTheNewPlaceIsLogged)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    OtherClient other(m_server.display());
    // What the combination with Num Lock will be once Num Lock is Mod3.
    ASSERT_TRUE(other.grabKey(m_keyboard.codeOf("1"), XCB_MOD_MASK_1 | XCB_MOD_MASK_4 | XCB_MOD_MASK_3));
    const QString line = QStringLiteral("LumenFold: failed to register hotkey 18/2304: -9878");
    expectLogLine(line);
    run(QStringLiteral("xmodmap"),
        {QStringLiteral("-e"), QStringLiteral("clear mod2"), QStringLiteral("-e"), QStringLiteral("clear mod3"),
         QStringLiteral("-e"), QStringLiteral("add mod3 = Num_Lock")});
    EXPECT_TRUE(waitFor([&] { return logLines().contains(line); }));
    m_keyboard.press("Super+Alt+1");
    EXPECT_EQ(typedBeforeMarker(), QStringLiteral("1"));
}

} // namespace
} // namespace lumenfold::test
