#pragma once

#include <QByteArray>

#include <memory>

namespace lumenfold {

class HotKeyService;
class KeyEventTapService;

namespace x11 {

/// The keyboard on X11: every grab of the program is made by one router, on a thread and a connection of its own.
///
/// A press goes first through the taps, newest first; then to the hotkey it matches; what nobody takes goes to the
/// front window as if nothing had happened. The router's thread asks the main thread about the taps and waits 250 ms at
/// most: then the press goes to the front window and the tap that kept it waiting is disabled and told so
/// (tapDisabledByTimeout). The keyboard is never left frozen. Without taps that want it, the thread sleeps.
///
/// Main thread. When the server goes away, that is logged once, and registrations fail with hotKeyInvalidError.
class X11KeyboardRouter {
public:
    /// `displayName` may be empty for $DISPLAY. Null when there is no such X server, or it lacks the XKB extension.
    [[nodiscard]] static std::unique_ptr<X11KeyboardRouter> start(const QByteArray &displayName = {});

    X11KeyboardRouter(const X11KeyboardRouter &) = delete;
    X11KeyboardRouter &operator=(const X11KeyboardRouter &) = delete;
    /// Taps and hotkeys may outlive the router; they do nothing any more.
    ~X11KeyboardRouter();

    /// Both live as long as the router.
    [[nodiscard]] KeyEventTapService &taps();
    [[nodiscard]] HotKeyService &hotKeys();

private:
    class Core;
    class Taps;
    class HotKeys;

    X11KeyboardRouter();

    std::shared_ptr<Core> m_core;
    std::unique_ptr<Taps> m_taps;
    std::unique_ptr<HotKeys> m_hotKeys;
};

} // namespace x11
} // namespace lumenfold
