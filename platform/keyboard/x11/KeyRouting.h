#pragma once

#include "platform/keyboard/KeyEvent.h"
#include "platform/keyboard/x11/HotKeyGrabs.h"
#include "platform/keyboard/x11/KeyboardConnection.h"
#include "platform/keyboard/x11/KeyboardMap.h"
#include "platform/keyboard/x11/TapChain.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace lumenfold::x11 {

class RouterMailbox;

/// Where every key press that a grab of ours brings goes: through the taps, then to the hotkey it matches, and
/// otherwise back to the front window as if nothing had happened. Runs on the router's thread and owns every grab.
///
/// The keyboard is frozen from the moment a grab delivers a press until the decision. It is never left so: a question
/// to the main thread has a deadline, and when the process ends, the server drops the grabs.
class KeyRouting {
public:
    using Clock = std::chrono::steady_clock;

    /// How long the main thread may take to answer for the taps. A press that waits longer goes to the front window,
    /// and the tap that kept it waiting is disabled.
    static constexpr std::chrono::milliseconds answerTime{250};
    /// How often, and for how long, the whole keyboard is asked for while another client holds it.
    static constexpr std::chrono::milliseconds holdRetryInterval{20};
    static constexpr std::chrono::milliseconds holdRetryTime{2000};
    /// A change of layout comes as a burst of notices; the map is read when they have stopped for as long.
    static constexpr std::chrono::milliseconds mapSettleTime{20};

    /// What goes to the main thread. Called on the router's thread; must not wait.
    struct Reports {
        /// To be answered with TapChain::answer.
        std::function<void(std::uint64_t question, const KeyEvent &, PressKind)> ask;
        std::function<void(std::shared_ptr<ChainedTap>)> tapDisabled;
        std::function<void(const RegisteredHotKey &)> hotKeyPressed;
        std::function<void()> connectionLost;
    };

    /// The collaborators must outlive this object.
    KeyRouting(std::unique_ptr<KeyboardConnection> connection, RouterMailbox &mailbox, TapChain &taps, Reports reports);

    /// Returns after stop(). Sleeps while nothing happens.
    void run();

    // Commands from the mailbox, run inside run().

    [[nodiscard]] HotKeyStatus addHotKey(const RegisteredHotKey &hotKey);
    void removeHotKey(HotKeyToken token);
    /// A tap was enabled or closed.
    void tapsChanged();
    void stop() { m_stopping = true; }

private:
    /// Which grab of ours is active, so that key events come here.
    enum class Hold {
        none,
        /// The passive grab of the key m_activatingKey, until that key is released.
        hotKey,
        /// The whole keyboard, until we give it back.
        keyboard,
    };
    enum class Repeat { no, ofTakenPress, ofOtherPress };

    /// A press that the taps are asked about. The keyboard is frozen meanwhile.
    struct PendingPress {
        xcb_keycode_t keycode = 0;
        std::optional<KeyCombination> combination;
        Repeat repeat = Repeat::no;
        Clock::time_point deadline;
    };

    void loadMap();
    [[nodiscard]] bool handleInputs();
    void handleTimers();
    void handleAnswer();
    void noticeLostConnection();
    void sleep();

    void press(const KeyboardConnection::Input &input);
    void release(xcb_keycode_t keycode);
    void ask(const PendingPress &press, KeyEvent event, PressKind kind);
    void decide(const PendingPress &press, TapDisposition disposition);
    void giveUp();
    void take(xcb_keycode_t keycode);
    void passOn(xcb_keycode_t keycode);
    void giveBackHotKey(xcb_keycode_t keycode);
    void forgetReplayed(const KeySet &released);

    void updateHold();
    void beginToHoldKeyboard();
    void tryToHoldKeyboard();
    void takeOverKeyboard();
    [[nodiscard]] bool isAnyKeyTaken() const;

    std::unique_ptr<KeyboardConnection> m_connection;
    RouterMailbox &m_mailbox;
    TapChain &m_taps;
    const Reports m_reports;

    KeyboardMap m_map;
    HotKeyGrabs m_hotKeys;
    Hold m_hold = Hold::none;
    xcb_keycode_t m_activatingKey = 0;
    std::optional<PendingPress> m_pending;

    /// Keys that are down and whose press never reached the front window; nor will their repeats.
    KeySet m_taken;
    /// While the whole keyboard is held: keys that are down and whose press a tap passed on, so that the front window
    /// gets the release as well.
    KeySet m_passed;
    /// The other keys that were down when the keyboard was taken. Their releases stay here: to give one back is to let
    /// go of the keyboard for a moment, and what is typed in that moment escapes the tap.
    KeySet m_downBefore;
    /// Hotkeys whose press was given back and which are still down: what their grab brings now is a repeat. While there
    /// is one, the releases of all keys are watched, because the grab does not bring this one.
    KeySet m_replayed;

    std::optional<Clock::time_point> m_mapReloadAt;
    std::optional<Clock::time_point> m_holdRetryAt;
    Clock::time_point m_holdRetryEnd;
    bool m_isLost = false;
    bool m_stopping = false;
};

} // namespace lumenfold::x11
