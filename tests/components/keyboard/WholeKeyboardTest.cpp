#include "tests/components/keyboard/OtherClient.h"
#include "tests/components/keyboard/RouterTest.h"

#include "tests/support/desktop/Wait.h"
#include "tests/support/unit/LogWatch.h"

#include <xcb/xproto.h>

#include <chrono>
#include <utility>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;
using KeyCodes = std::vector<std::uint32_t>;

class WholeKeyboard : public RouterTest {
protected:
    [[nodiscard]] bool waitForSeen(const KeyCodes &keys)
    {
        return waitFor([&] { return seenKeys() == keys; });
    }
};

TEST_F(WholeKeyboard, TheTapSeesEveryPressAndNobodyElseDoes)
{
    const auto tap = watchingTap(TapScope::wholeKeyboard, TapDisposition::swallow);
    m_keyboard.press("a");
    m_keyboard.press("Super+Alt+Shift+Ctrl+d");
    m_keyboard.press("Escape");
    ASSERT_TRUE(waitForSeen({keyCodes::a, keyCodes::d, keyCodes::escape}));
    EXPECT_EQ(m_seen[0].flags, 0u);
    EXPECT_EQ(m_seen[0].charactersIgnoringModifiers, QStringLiteral("a"));
    EXPECT_EQ(m_seen[1].flags, keyFlags::command | keyFlags::option | keyFlags::shift | keyFlags::control);
    EXPECT_EQ(m_seen[1].charactersIgnoringModifiers, QStringLiteral("d"));
    EXPECT_EQ(typed(), QString());
    EXPECT_TRUE(m_front.keyPresses().isEmpty()) << "not even the modifiers";
}

TEST_F(WholeKeyboard, TheTapSeesKeysThatTheWindowManagerHasTaken)
{
    OtherClient windowManager(m_server.display());
    ASSERT_TRUE(windowManager.grabKey(m_keyboard.codeOf("d"), XCB_MOD_MASK_4));
    auto tap = watchingTap(TapScope::wholeKeyboard, TapDisposition::swallow);
    m_keyboard.press("Super+d");
    EXPECT_TRUE(waitForSeen({keyCodes::d}));
    EXPECT_EQ(windowManager.presses(), 0);

    tap.reset();
    settle();
    m_keyboard.press("Super+d");
    EXPECT_TRUE(waitFor([&] { return windowManager.presses() == 1; }));
}

TEST_F(WholeKeyboard, AfterClosingKeysReachTheFrontWindowAgain)
{
    auto tap = watchingTap(TapScope::wholeKeyboard, TapDisposition::swallow);
    m_keyboard.press("Escape");
    EXPECT_TRUE(waitForSeen({keyCodes::escape}));
    tap.reset();
    settle();
    m_keyboard.press("a");
    m_keyboard.press("Escape");
    EXPECT_EQ(typedBeforeMarker(), QStringLiteral("a Escape"));
    EXPECT_EQ(seenKeys(), KeyCodes{keyCodes::escape});
}

TEST_F(WholeKeyboard, ATapThatClosesItselfKeepsTheKeyItTook)
{
    std::unique_ptr<KeyEventTap> tap;
    int asked = 0;
    tap = m_router->taps().createTap(TapScope::wholeKeyboard, [&](const KeyEvent &) {
        tap.reset();
        ++asked;
        return TapDisposition::swallow;
    });
    tap->enable();
    settle();
    m_keyboard.down("Super");
    m_keyboard.down("1");
    EXPECT_TRUE(waitFor([&] { return asked == 1; }));
    EXPECT_TRUE(staysTrue([&] { return typed().isEmpty(); }, manyRepeats)) << "nor does it repeat anywhere";
    m_keyboard.up("1");
    m_keyboard.up("Super");
    m_keyboard.press("a");
    EXPECT_EQ(typedBeforeMarker(), QStringLiteral("a"));
    EXPECT_EQ(asked, 1);
}

TEST_F(WholeKeyboard, AfterItClosesItselfOtherKeysTypeAtOnce)
{
    std::unique_ptr<KeyEventTap> tap;
    tap = m_router->taps().createTap(TapScope::wholeKeyboard, [&](const KeyEvent &) {
        tap.reset();
        return TapDisposition::swallow;
    });
    tap->enable();
    settle();
    m_keyboard.down("1");
    EXPECT_TRUE(waitFor([&] { return !tap; }));
    m_keyboard.press("a");
    m_keyboard.press("b");
    EXPECT_TRUE(waitForTyped(QStringLiteral("a b"))) << "while the first key is still down";
    m_keyboard.up("1");
    EXPECT_EQ(typedBeforeMarker(), QStringLiteral("a b"));
}

TEST_F(WholeKeyboard, WhatIsNotSwallowedReachesTheFrontWindow)
{
    const auto tap = watchingTap(TapScope::wholeKeyboard, TapDisposition::passOn);
    m_keyboard.press("a");
    EXPECT_TRUE(waitForTyped(QStringLiteral("a")));
    m_keyboard.press("b");
    EXPECT_TRUE(waitForTyped(QStringLiteral("a b")));
    EXPECT_EQ(seenKeys().size(), 2u);
    EXPECT_FALSE(m_seen[1].isAutorepeat);
    m_keyboard.press("b");
    EXPECT_TRUE(waitFor([&] { return m_seen.size() == 3; }));
    EXPECT_FALSE(m_seen[2].isAutorepeat) << "the release in between was noticed";
}

TEST_F(WholeKeyboard, TheTapComesBeforeTheHotkeyAndTellsRepeats)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    const auto tap = watchingTap(TapScope::wholeKeyboard, TapDisposition::swallow);
    m_keyboard.down("Super");
    m_keyboard.down("Alt");
    m_keyboard.down("1");
    EXPECT_TRUE(waitFor([&] { return m_seen.size() > 3; }));
    m_keyboard.up("1");
    m_keyboard.up("Alt");
    m_keyboard.up("Super");
    EXPECT_FALSE(m_seen[0].isAutorepeat);
    EXPECT_TRUE(m_seen[1].isAutorepeat);
    EXPECT_TRUE(m_seen[2].isAutorepeat);
    EXPECT_EQ(pressed(1), 0);

    m_seen.clear();
    m_keyboard.press("1");
    EXPECT_TRUE(waitFor([&] { return !m_seen.empty() && !m_seen.back().isAutorepeat; })) << "a new press is no repeat";
    EXPECT_EQ(typed(), QString());
}

TEST_F(WholeKeyboard, AHotkeyThatTheTapPassesOnFires)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    const auto tap = watchingTap(TapScope::wholeKeyboard, TapDisposition::passOn);
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitForPress(1));
    EXPECT_EQ(typed(), QString());
}

TEST_F(WholeKeyboard, CanBeTakenWhileAHotkeyIsHeld)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    m_keyboard.down("Super");
    m_keyboard.down("Alt");
    m_keyboard.down("1");
    EXPECT_TRUE(waitForPress(1));
    auto tap = watchingTap(TapScope::wholeKeyboard, TapDisposition::swallow);
    m_keyboard.up("1");
    m_keyboard.up("Alt");
    m_keyboard.up("Super");
    m_keyboard.press("a");
    EXPECT_TRUE(waitFor([&] { return !m_seen.empty() && m_seen.back().keyCode == keyCodes::a; }));
    tap.reset();
    settle();
    EXPECT_EQ(typedBeforeMarker(), QString());
}

TEST_F(WholeKeyboard, CanBeTakenInAHotkeysOwnTap)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    std::unique_ptr<KeyEventTap> recorder;
    const auto tap = m_router->taps().createTap(TapScope::hotKeys, [&](const KeyEvent &) {
        recorder = watchingTap(TapScope::wholeKeyboard, TapDisposition::swallow);
        return TapDisposition::swallow;
    });
    tap->enable();
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitFor([&] { return recorder != nullptr; }));
    settle();
    m_keyboard.press("a");
    EXPECT_TRUE(waitForSeen({keyCodes::a}));
    EXPECT_EQ(typed(), QString());
}

TEST_F(WholeKeyboard, AKeyThatWasDownBeforeOnlyRepeats)
{
    m_keyboard.down("a");
    EXPECT_TRUE(waitFor([&] { return typed().startsWith(QLatin1Char('a')); }));
    const auto tap = watchingTap(TapScope::wholeKeyboard, TapDisposition::swallow);
    EXPECT_TRUE(waitFor([&] { return m_seen.size() > 2; }));
    m_keyboard.up("a");
    for (const KeyEvent &event : m_seen) {
        EXPECT_EQ(event.keyCode, keyCodes::a);
        EXPECT_TRUE(event.isAutorepeat);
    }
    m_keyboard.press("d");
    EXPECT_TRUE(waitFor([&] { return m_seen.back().keyCode == keyCodes::d; }));
    EXPECT_FALSE(m_seen.back().isAutorepeat);
    EXPECT_FALSE(typed().contains(QLatin1Char('d')));
}

TEST_F(WholeKeyboard, IsTakenAsSoonAsAnotherProgramLetsGo)
{
    OtherClient menu(m_server.display());
    ASSERT_TRUE(menu.grabKeyboard());
    const auto tap = watchingTap(TapScope::wholeKeyboard, TapDisposition::swallow);
    m_keyboard.press("a");
    EXPECT_TRUE(waitFor([&] { return menu.presses() == 1; }));
    EXPECT_TRUE(m_seen.empty());
    menu.ungrabKeyboard();
    EXPECT_TRUE(waitFor([&] {
        m_keyboard.press("d");
        return !m_seen.empty();
    }));
    EXPECT_EQ(m_seen[0].keyCode, keyCodes::d);
}

TEST_F(WholeKeyboard, IsGivenUpWhenAnotherProgramDoesNotLetGo)
{
    OtherClient menu(m_server.display());
    ASSERT_TRUE(menu.grabKeyboard());
    const QString line = QStringLiteral("LumenFold: another program holds the keyboard");
    expectLogLine(line);
    auto tap = watchingTap(TapScope::wholeKeyboard, TapDisposition::swallow);
    EXPECT_TRUE(waitFor([&] { return logLines().contains(line); }));
    menu.ungrabKeyboard();
    m_keyboard.press("a");
    EXPECT_EQ(typedBeforeMarker(), QStringLiteral("a"));

    tap->enable();
    settle();
    m_keyboard.press("d");
    EXPECT_TRUE(waitForSeen({keyCodes::d})) << "enabling asks again";
}

TEST_F(WholeKeyboard, AStuckMainThreadGivesTheKeyboardBack)
{
    const auto tap = watchingTap(TapScope::wholeKeyboard, TapDisposition::swallow);
    m_keyboard.press("a");
    m_keyboard.press("b");
    const auto deadline = std::chrono::steady_clock::now() + 500ms;
    while (typed() != QStringLiteral("a b") && std::chrono::steady_clock::now() < deadline) {
    }
    EXPECT_EQ(typed(), QStringLiteral("a b"));
    EXPECT_TRUE(waitFor([&] { return !m_seen.empty(); }));
    EXPECT_EQ(m_seen[0].type, KeyEventType::tapDisabledByTimeout);

    m_seen.clear();
    tap->enable();
    settle();
    m_keyboard.press("d");
    EXPECT_TRUE(waitForSeen({keyCodes::d}));
}

} // namespace
} // namespace lumenfold::test
