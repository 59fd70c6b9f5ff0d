#pragma once

#include "platform/keyboard/HotKeyService.h"
#include "platform/keyboard/KeyEvent.h"
#include "platform/keyboard/KeyEventTap.h"
#include "platform/keyboard/x11/X11KeyboardRouter.h"
#include "tests/support/desktop/Input.h"
#include "tests/support/desktop/TestWindow.h"
#include "tests/support/desktop/XServer.h"

#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

namespace lumenfold::test {

/// Virtual key codes of the keys that these tests strike.
namespace keyCodes {
inline constexpr std::uint32_t a = 0;
inline constexpr std::uint32_t d = 2;
inline constexpr std::uint32_t q = 12;
inline constexpr std::uint32_t digit1 = 18;
inline constexpr std::uint32_t digit2 = 19;
inline constexpr std::uint32_t escape = 53;
} // namespace keyCodes

inline constexpr std::uint32_t optionCommand = carbon::optionKey | carbon::cmdKey;

/// An X server whose keys repeat quickly, a front window that notes what is typed into it, and a router.
class RouterTest : public ::testing::Test {
protected:
    static constexpr int repeatDelay = 100;
    static constexpr int repeatInterval = 10;
    /// Enough for more than ten repeats.
    static constexpr std::chrono::milliseconds manyRepeats{repeatDelay + 15 * repeatInterval};

    RouterTest();
    ~RouterTest() override;

    /// Registers, counts presses in `pressed(id)`, and keeps the registration until `unregister(id)`.
    HotKeyStatus registerHotKey(std::uint32_t id, std::uint32_t keyCode = keyCodes::digit1,
                                std::uint32_t modifiers = optionCommand);
    void unregister(std::uint32_t id);
    [[nodiscard]] int pressed(std::uint32_t id) const;
    [[nodiscard]] bool waitForPress(std::uint32_t id, int times = 1) const;

    /// An enabled tap that notes every event in m_seen and answers `disposition`.
    [[nodiscard]] std::unique_ptr<KeyEventTap> watchingTap(TapScope scope, TapDisposition disposition);
    /// The key codes of the presses that the watching taps saw.
    [[nodiscard]] std::vector<std::uint32_t> seenKeys() const;

    /// All that was asked of the router so far has reached the server when this returns.
    void settle();

    /// What the front window got, modifiers left out; "a b Escape".
    [[nodiscard]] QString typed();
    /// Types a key that nobody takes and waits for the front window to have it: whatever was struck before has gone
    /// where it goes. The key does not count as typed.
    [[nodiscard]] QString typedBeforeMarker();
    /// Waits until exactly that has been typed.
    [[nodiscard]] bool waitForTyped(const QString &text);

    XServer m_server;
    Keyboard m_keyboard;
    TestWindow m_front;
    std::unique_ptr<x11::X11KeyboardRouter> m_router;
    std::vector<KeyEvent> m_seen;

private:
    struct HotKey {
        std::uint32_t id;
        int presses = 0;
        std::unique_ptr<HotKeyRef> ref;
    };
    std::vector<HotKey> m_hotKeys;
};

} // namespace lumenfold::test
