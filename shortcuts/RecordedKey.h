#pragma once

#include "platform/keyboard/KeyEvent.h"
#include "shortcuts/Shortcut.h"

#include <optional>

namespace lumenfold {

/// What a key press means to whoever records a shortcut.
struct RecordedKey {
    enum class Meaning {
        /// Escape, with whatever modifiers: nothing is recorded.
        cancel,
        /// No modifier is held: such a key would be taken from every other program.
        refuse,
        /// `shortcut` is the combination.
        record,
    };

    Meaning meaning = Meaning::refuse;
    std::optional<Shortcut> shortcut = std::nullopt;

    [[nodiscard]] static RecordedKey of(const KeyEvent &press);
};

} // namespace lumenfold
