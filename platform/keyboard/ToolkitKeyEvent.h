#pragma once

#include "platform/keyboard/KeyEvent.h"

#include <optional>

class QKeyEvent;

namespace lumenfold {

/// A key press that a window of the program got from the toolkit, in the words of taps. The key's place is what the
/// session's keyboard driver (evdev) says. Nothing for a modifier by itself and for a key that no combination has.
[[nodiscard]] std::optional<KeyEvent> keyEventOf(const QKeyEvent &press);

} // namespace lumenfold
