#pragma once

#include "platform/keyboard/KeyEvent.h"

#include <functional>
#include <memory>

namespace lumenfold {

/// What a tap's handler does with an event.
enum class TapDisposition { passOn, swallow };

/// Which key presses a tap can see. Where the platform cannot show every press of the session to a tap without holding
/// the keyboard (X11), `hotKeys` sees the presses of registered hotkeys before they fire, and `wholeKeyboard` holds the
/// keyboard and sees every press until it is closed.
enum class TapScope { hotKeys, wholeKeyboard };

/// An active filter on key presses. Closed (its port invalidated) when destroyed.
class KeyEventTap {
public:
    KeyEventTap() = default;
    KeyEventTap(const KeyEventTap &) = delete;
    KeyEventTap &operator=(const KeyEventTap &) = delete;
    virtual ~KeyEventTap() = default;

    /// A tap is created disabled, and disabled by the platform when its handler keeps the keyboard waiting; the handler
    /// is then told with a tapDisabled notice.
    virtual void enable() = 0;
};

/// Makes taps. Handlers run on the main thread.
class KeyEventTapService {
public:
    using Handler = std::function<TapDisposition(const KeyEvent &)>;

    KeyEventTapService() = default;
    KeyEventTapService(const KeyEventTapService &) = delete;
    KeyEventTapService &operator=(const KeyEventTapService &) = delete;
    virtual ~KeyEventTapService() = default;

    /// A new tap in front of all others, or null when the platform does not allow one now.
    [[nodiscard]] virtual std::unique_ptr<KeyEventTap> createTap(TapScope scope, Handler handler) = 0;
};

} // namespace lumenfold
