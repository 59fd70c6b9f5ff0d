#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace lumenfold {

class HotKeyService;
class KeyEventTapService;
class MainQueue;

/// Makes key combinations run actions while any other program is in front. Each registration is served twice: by one
/// keyboard tap that all share and by a platform hotkey of its own, so that either alone is enough. A press that the
/// tap swallows never becomes a hotkey press.
///
/// Main thread. Actions run from the main queue, never inside a callback of the platform, so an action may register and
/// unregister. An action that was unregistered before its turn does not run.
class HotkeyManager {
public:
    using Action = std::function<void()>;

    /// The collaborators must outlive this object and the work that it has queued. Installs the press handler of the
    /// hotkey service, for good.
    HotkeyManager(KeyEventTapService &taps, HotKeyService &hotKeys, MainQueue &mainQueue);
    HotkeyManager(const HotkeyManager &) = delete;
    HotkeyManager &operator=(const HotkeyManager &) = delete;
    ~HotkeyManager();

    /// `keyCode` is a macOS virtual key code, `modifiers` a mask of carbon:: bits that must be held exactly. Returns a
    /// fresh id (1, 2, ...), never used again, even when the platform took neither the tap nor the hotkey; that is
    /// only logged.
    std::uint32_t registerHotkey(std::uint32_t keyCode, std::uint32_t modifiers, Action action);

    /// An unknown id changes nothing.
    void unregister(std::uint32_t id);

    void unregisterAll();

private:
    struct State;
    /// A hotkey press that is on its way through the main queue keeps the state, and with it the registrations, until
    /// its action has run.
    std::shared_ptr<State> m_state;
};

} // namespace lumenfold
