#pragma once

#include <functional>
#include <memory>

namespace lumenfold {

class HotKeyRef;
class HotKeyService;
class KeyEventTap;
class KeyEventTapService;
class MainQueue;

/// Takes the Escape key from whatever has the keyboard, once: the press is swallowed, and later ones pass again. Every
/// other key goes where it always goes. Main thread.
class EscapeMonitor {
public:
    struct Collaborators {
        KeyEventTapService &taps;
        HotKeyService &hotKeys;
        MainQueue &queue;
    };

    /// The collaborators must outlive the monitor. `onEscape` is called once, in a later turn of the event loop, and
    /// not once the monitor is gone. Where another program holds the key, the monitor gets nothing.
    EscapeMonitor(const Collaborators &collaborators, std::function<void()> onEscape);
    EscapeMonitor(const EscapeMonitor &) = delete;
    EscapeMonitor &operator=(const EscapeMonitor &) = delete;
    ~EscapeMonitor();

private:
    struct State;

    const std::shared_ptr<State> m_state;
    /// The tap goes before the hotkey that makes the press visible to it.
    std::unique_ptr<HotKeyRef> m_hotKey;
    std::unique_ptr<KeyEventTap> m_tap;
};

} // namespace lumenfold
