#include "tests/components/keyboard/RouterTest.h"

#include "tests/support/desktop/Wait.h"

#include <utility>

namespace lumenfold::test {
namespace {

class TapRouting : public RouterTest {};

TEST_F(TapRouting, ATapSeesAHotkeyBeforeItFires)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    const auto tap = watchingTap(TapScope::hotKeys, TapDisposition::passOn);
    m_keyboard.press("Caps_Lock");
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitForPress(1));
    ASSERT_EQ(m_seen.size(), 1u);
    EXPECT_EQ(m_seen[0].type, KeyEventType::keyDown);
    EXPECT_EQ(m_seen[0].keyCode, keyCodes::digit1);
    EXPECT_EQ(m_seen[0].flags, keyFlags::option | keyFlags::command | keyFlags::capsLock);
    EXPECT_FALSE(m_seen[0].isAutorepeat);
    EXPECT_EQ(m_seen[0].charactersIgnoringModifiers, QStringLiteral("1"));
}

TEST_F(TapRouting, ASwallowedPressFiresNothing)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    const auto tap = watchingTap(TapScope::hotKeys, TapDisposition::swallow);
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitFor([&] { return m_seen.size() == 1; }));
    EXPECT_EQ(typedBeforeMarker(), QString());
    EXPECT_EQ(pressed(1), 0);
}

TEST_F(TapRouting, TheNewestTapComesFirst)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    QStringList order;
    const auto noting = [&order](const QString &name, TapDisposition disposition) {
        return [&order, name, disposition](const KeyEvent &) {
            order.append(name);
            return disposition;
        };
    };
    const auto oldest =
        m_router->taps().createTap(TapScope::hotKeys, noting(QStringLiteral("oldest"), TapDisposition::passOn));
    const auto middle =
        m_router->taps().createTap(TapScope::hotKeys, noting(QStringLiteral("middle"), TapDisposition::swallow));
    const auto newest =
        m_router->taps().createTap(TapScope::hotKeys, noting(QStringLiteral("newest"), TapDisposition::passOn));
    oldest->enable();
    middle->enable();
    newest->enable();
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitFor([&] { return order.size() >= 2; }));
    EXPECT_EQ(typedBeforeMarker(), QString());
    EXPECT_EQ(order, (QStringList{QStringLiteral("newest"), QStringLiteral("middle")}));
}

TEST_F(TapRouting, ADisabledTapIsNotAsked)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    bool asked = false;
    const auto tap = m_router->taps().createTap(TapScope::hotKeys, [&asked](const KeyEvent &) {
        asked = true;
        return TapDisposition::swallow;
    });
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitForPress(1));
    EXPECT_FALSE(asked);
}

TEST_F(TapRouting, KeysThatAreNoHotkeysAreNotSeen)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    const auto tap = watchingTap(TapScope::hotKeys, TapDisposition::swallow);
    m_keyboard.press("a");
    m_keyboard.press("Super+Alt+2");
    EXPECT_EQ(typedBeforeMarker(), QStringLiteral("a 2"));
    EXPECT_TRUE(m_seen.empty());
}

TEST_F(TapRouting, AfterATapIsClosedTheHotkeyFires)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    auto tap = watchingTap(TapScope::hotKeys, TapDisposition::swallow);
    tap.reset();
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitForPress(1));
    EXPECT_TRUE(m_seen.empty());
}

TEST_F(TapRouting, ATapMayBeClosedInItsOwnHandler)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    std::unique_ptr<KeyEventTap> tap;
    int asked = 0;
    const auto handler = [&, kept = std::make_shared<int>(1)](const KeyEvent &) {
        tap.reset();
        asked += *kept;
        return TapDisposition::swallow;
    };
    tap = m_router->taps().createTap(TapScope::hotKeys, handler);
    tap->enable();
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitFor([&] { return asked == 1; }));
    EXPECT_EQ(typedBeforeMarker(), QString()) << "its answer still counts";
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitForPress(1));
    EXPECT_EQ(asked, 1);
}

TEST_F(TapRouting, AHotkeyMayBeUnregisteredWhileItsPressIsPending)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    const auto tap = m_router->taps().createTap(TapScope::hotKeys, [this](const KeyEvent &) {
        unregister(1);
        return TapDisposition::passOn;
    });
    tap->enable();
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitForTyped(QStringLiteral("1")));
    m_keyboard.press("Super+Alt+1");
    EXPECT_EQ(typedBeforeMarker(), QStringLiteral("1 1"));
    EXPECT_EQ(pressed(1), 0);
}

TEST_F(TapRouting, AHotkeyMayBeRegisteredWhileAPressIsPending)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    HotKeyStatus status = hotKeyInvalidError;
    const auto tap = m_router->taps().createTap(TapScope::hotKeys, [&](const KeyEvent &event) {
        if (event.keyCode == keyCodes::digit1) {
            status = registerHotKey(2, keyCodes::digit2);
        }
        return TapDisposition::passOn;
    });
    tap->enable();
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitForPress(1));
    EXPECT_EQ(status, noHotKeyError);
    m_keyboard.press("Super+Alt+2");
    EXPECT_TRUE(waitForPress(2));
}

TEST_F(TapRouting, TapsAndHotkeysMayOutliveTheRouter)
{
    auto tap = watchingTap(TapScope::wholeKeyboard, TapDisposition::swallow);
    auto hotKey = m_router->hotKeys().registerHotKey(keyCodes::digit1, optionCommand, {});
    m_router.reset();
    tap->enable();
    tap.reset();
    hotKey.ref.reset();
    m_keyboard.press("Super+Alt+1");
    m_keyboard.press("a");
    EXPECT_TRUE(waitForTyped(QStringLiteral("1 a")));
}

} // namespace
} // namespace lumenfold::test
