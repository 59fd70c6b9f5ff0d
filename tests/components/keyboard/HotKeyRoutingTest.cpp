#include "tests/components/keyboard/OtherClient.h"
#include "tests/components/keyboard/RouterTest.h"

#include "shortcuts/HotkeyManager.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/FakeMainQueue.h"
#include "tests/support/unit/LogWatch.h"

#include <xcb/xproto.h>

#include <chrono>

namespace lumenfold::test {
namespace {

class HotKeyRouting : public RouterTest {};

TEST_F(HotKeyRouting, ABoundCombinationIsSwallowedAndFiresOnce)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitForPress(1));
    EXPECT_EQ(typedBeforeMarker(), QString());
    EXPECT_EQ(pressed(1), 1);
}

TEST_F(HotKeyRouting, EachHotkeyTellsItsOwnId)
{
    ASSERT_EQ(registerHotKey(1, keyCodes::digit1), noHotKeyError);
    ASSERT_EQ(registerHotKey(2, keyCodes::digit2, carbon::controlKey | carbon::shiftKey), noHotKeyError);
    m_keyboard.press("Ctrl+Shift+2");
    EXPECT_TRUE(waitForPress(2));
    EXPECT_EQ(pressed(1), 0);
}

TEST_F(HotKeyRouting, FiresForEveryPress)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    for (int i = 0; i < 20; ++i) {
        m_keyboard.press("Super+Alt+1");
    }
    EXPECT_TRUE(waitForPress(1, 20));
    EXPECT_EQ(typedBeforeMarker(), QString());
}

TEST_F(HotKeyRouting, FiresWithLocksOn)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    m_keyboard.press("Caps_Lock");
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitForPress(1, 1)) << "with Caps Lock";
    m_keyboard.press("Num_Lock");
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitForPress(1, 2)) << "with Caps Lock and Num Lock";
    m_keyboard.press("Caps_Lock");
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitForPress(1, 3)) << "with Num Lock";
    EXPECT_EQ(typedBeforeMarker(), QString());
}

TEST_F(HotKeyRouting, OtherModifiersReachTheFrontWindow)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    m_keyboard.press("Super+Alt+Shift+1");
    m_keyboard.press("Super+Alt+Ctrl+1");
    m_keyboard.press("Alt+1");
    m_keyboard.press("Super+1");
    m_keyboard.press("1");
    EXPECT_TRUE(waitForTyped(QStringLiteral("1 1 1 1 1")));
    EXPECT_EQ(pressed(1), 0);
}

TEST_F(HotKeyRouting, AutoRepeatFiresNothingMoreAndReachesNobody)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);

    m_keyboard.down("a");
    EXPECT_TRUE(waitFor([&] { return m_front.keyPresses().size() > 5; })) << "keys repeat on this server";
    m_keyboard.up("a");
    m_front.forgetInput();

    m_keyboard.down("Super");
    m_keyboard.down("Alt");
    m_keyboard.down("1");
    EXPECT_TRUE(waitForPress(1));
    EXPECT_TRUE(staysTrue([&] { return pressed(1) == 1 && typed().isEmpty(); }, manyRepeats));

    // The modifiers go first: what repeats now is a plain 1.
    m_keyboard.up("Alt");
    m_keyboard.up("Super");
    EXPECT_TRUE(staysTrue([&] { return pressed(1) == 1 && typed().isEmpty(); }, manyRepeats));
    m_keyboard.up("1");

    EXPECT_EQ(typedBeforeMarker(), QString());
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitForPress(1, 2)) << "a second press is no repeat";
}

TEST_F(HotKeyRouting, ASecondHotkeyIsTakenWhileTheFirstIsHeld)
{
    ASSERT_EQ(registerHotKey(1, keyCodes::digit1), noHotKeyError);
    ASSERT_EQ(registerHotKey(2, keyCodes::digit2), noHotKeyError);
    m_keyboard.down("Super");
    m_keyboard.down("Alt");
    m_keyboard.down("1");
    m_keyboard.down("2");
    m_keyboard.up("1");
    m_keyboard.up("Alt");
    m_keyboard.up("Super");
    EXPECT_TRUE(waitForPress(2));
    EXPECT_TRUE(staysTrue([&] { return pressed(2) == 1 && typed().isEmpty(); }, manyRepeats));
    m_keyboard.up("2");
    EXPECT_EQ(pressed(1), 1);
    EXPECT_EQ(typedBeforeMarker(), QString());
}

TEST_F(HotKeyRouting, AKeyTypedWhileAHotkeyIsHeldReachesTheFrontWindow)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    m_keyboard.down("Super");
    m_keyboard.down("Alt");
    m_keyboard.down("1");
    m_keyboard.up("Alt");
    m_keyboard.up("Super");
    m_keyboard.press("a");
    m_keyboard.press("b");
    EXPECT_TRUE(waitForTyped(QStringLiteral("a b")));
    m_keyboard.up("1");
    EXPECT_EQ(typedBeforeMarker(), QStringLiteral("a b"));
    EXPECT_TRUE(waitForPress(1));
}

TEST_F(HotKeyRouting, TypingOrderHolds)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    const auto tap = watchingTap(TapScope::hotKeys, TapDisposition::passOn);
    for (int i = 0; i < 10; ++i) {
        m_keyboard.press("a");
        m_keyboard.press("Super+Alt+1");
        m_keyboard.press("b");
        m_keyboard.press("c");
        m_keyboard.press("Super+Alt+1");
        m_keyboard.press("d");
    }
    EXPECT_TRUE(waitForPress(1, 20));
    QStringList expected;
    for (int i = 0; i < 10; ++i) {
        expected.append(QStringLiteral("a b c d"));
    }
    EXPECT_EQ(typedBeforeMarker(), expected.join(QLatin1Char(' ')));
}

TEST_F(HotKeyRouting, AfterUnregisteringTheFrontWindowGetsTheKeyAgain)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    unregister(1);
    m_keyboard.press("Super+Alt+1");
    EXPECT_EQ(typedBeforeMarker(), QStringLiteral("1"));
    EXPECT_EQ(pressed(1), 0);
}

TEST_F(HotKeyRouting, ACombinationStaysTakenUntilItsLastRegistrationGoes)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    ASSERT_EQ(registerHotKey(2), noHotKeyError);
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitForPress(1)) << "the older one has it";
    EXPECT_EQ(pressed(2), 0);
    unregister(1);
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitForPress(2));
    unregister(2);
    m_keyboard.press("Super+Alt+1");
    EXPECT_EQ(typedBeforeMarker(), QStringLiteral("1"));
}

TEST_F(HotKeyRouting, AKeyThatThisKeyboardDoesNotHaveIsInvalid)
{
    EXPECT_EQ(registerHotKey(1, 200, optionCommand), hotKeyInvalidError);
    EXPECT_EQ(registerHotKey(1, 0xffffffff, optionCommand), hotKeyInvalidError);
    EXPECT_EQ(registerHotKey(1, keyCodes::digit1), noHotKeyError);
}

TEST_F(HotKeyRouting, ACombinationThatAnotherProgramHoldsIsRefused)
{
    OtherClient other(m_server.display());
    ASSERT_TRUE(other.grabKey(m_keyboard.codeOf("1"), XCB_MOD_MASK_1 | XCB_MOD_MASK_4));
    EXPECT_EQ(registerHotKey(1), hotKeyExistsError);
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitFor([&] { return other.presses() == 1; })) << "the other program keeps it";
    EXPECT_EQ(registerHotKey(2, keyCodes::digit2), noHotKeyError) << "other combinations are not affected";

    other.ungrabKey(m_keyboard.codeOf("1"), XCB_MOD_MASK_1 | XCB_MOD_MASK_4);
    EXPECT_EQ(registerHotKey(1), noHotKeyError);
}

TEST_F(HotKeyRouting, ARefusedCombinationLeavesNothingBehind)
{
    OtherClient other(m_server.display());
    // Only with Caps Lock on: the rest of the combination would be free.
    ASSERT_TRUE(other.grabKey(m_keyboard.codeOf("1"), XCB_MOD_MASK_1 | XCB_MOD_MASK_4 | XCB_MOD_MASK_LOCK));
    EXPECT_EQ(registerHotKey(1), hotKeyExistsError);
    m_keyboard.press("Super+Alt+1");
    EXPECT_EQ(typedBeforeMarker(), QStringLiteral("1"));
}

TEST_F(HotKeyRouting, TheHotkeyManagerLogsARefusalAndServesTheRest)
{
    OtherClient other(m_server.display());
    ASSERT_TRUE(other.grabKey(m_keyboard.codeOf("1"), XCB_MOD_MASK_1 | XCB_MOD_MASK_4));
    FakeMainQueue queue;
    HotkeyManager manager(m_router->taps(), m_router->hotKeys(), queue);
    int refused = 0;
    int accepted = 0;
    expectLogLine(QStringLiteral("LumenFold: failed to register hotkey 18/2304: -9878"));
    manager.registerHotkey(keyCodes::digit1, optionCommand, [&] { ++refused; });
    manager.registerHotkey(keyCodes::digit2, optionCommand, [&] { ++accepted; });
    m_keyboard.press("Super+Alt+1");
    m_keyboard.press("Super+Alt+2");
    EXPECT_TRUE(waitFor([&] {
        queue.runPosted();
        return accepted > 0;
    }));
    EXPECT_EQ(accepted, 1) << "the tap and the hotkey are not both told";
    EXPECT_EQ(refused, 0);

    manager.unregisterAll();
    settle();
    m_keyboard.press("Super+Alt+2");
    EXPECT_EQ(typedBeforeMarker(), QStringLiteral("2"));
}

TEST_F(HotKeyRouting, APressThatIsOnItsWayWhenTheHotkeyGoesIsNotTold)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    m_keyboard.press("Super+Alt+1");
    settle();
    // The events of this thread have not run since the press.
    unregister(1);
    EXPECT_EQ(typedBeforeMarker(), QString());
    EXPECT_EQ(pressed(1), 0);
}

TEST_F(HotKeyRouting, IsQuick)
{
    using Clock = std::chrono::steady_clock;
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    std::chrono::microseconds longest{0};
    for (int i = 1; i <= 50; ++i) {
        const Clock::time_point start = Clock::now();
        m_keyboard.press("Super+Alt+1");
        ASSERT_TRUE(waitForPress(1, i));
        longest = std::max(longest, std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start));
    }
    RecordProperty("longest_us", static_cast<int>(longest.count()));
    EXPECT_LT(longest, std::chrono::milliseconds(100));
}

} // namespace
} // namespace lumenfold::test
