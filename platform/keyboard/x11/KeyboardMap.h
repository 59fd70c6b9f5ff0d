#pragma once

#include "platform/keyboard/KeyEvent.h"

#include <xcb/xproto.h>

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

struct xkb_keymap;

namespace lumenfold::x11 {

/// A hotkey's combination in the words of the program.
struct KeyCombination {
    /// macOS virtual key code.
    std::uint32_t keyCode = 0;
    /// A mask of carbon:: bits.
    std::uint32_t carbonModifiers = 0;

    friend auto operator<=>(const KeyCombination &, const KeyCombination &) = default;
};

/// One combination as the server has to be told of it: every keycode that the key has, with every mask under which it
/// must be recognised.
struct KeyGrab {
    std::vector<xcb_keycode_t> keycodes;
    std::vector<std::uint16_t> modifierMasks;

    [[nodiscard]] bool isPossible() const { return !keycodes.empty() && !modifierMasks.empty(); }

    friend bool operator==(const KeyGrab &, const KeyGrab &) = default;
};

/// What the router has to know of a keymap, and nothing more: which key stands where, what it types, and which of the
/// server's modifier bits are which modifier. A plain value.
class KeyboardMap {
public:
    /// A keyboard with no keys.
    KeyboardMap() = default;
    [[nodiscard]] static KeyboardMap fromKeymap(xkb_keymap *keymap);

    /// Impossible when the key is not on this keyboard, or one of the modifiers is not.
    [[nodiscard]] KeyGrab grabFor(KeyCombination combination) const;

    // `state` is that of a key event of the core protocol.

    /// Nothing for a key that has no virtual key code, or with a modifier held that no combination can have. The locks
    /// do not count.
    [[nodiscard]] std::optional<KeyCombination> combination(xcb_keycode_t keycode, std::uint16_t state) const;

    /// `layout` counts from 0. Nothing for a key that has no virtual key code.
    [[nodiscard]] std::optional<KeyEvent> keyDown(xcb_keycode_t keycode, std::uint16_t state, std::size_t layout) const;

    /// Shift, Caps Lock and the like: keys that only change what others do.
    [[nodiscard]] bool isModifier(xcb_keycode_t keycode) const { return m_keys[keycode].isModifier; }

    friend bool operator==(const KeyboardMap &, const KeyboardMap &) = default;

private:
    static constexpr std::uint8_t noVirtualKeyCode = 0xff;
    static constexpr std::size_t layouts = 4;

    struct Key {
        std::uint8_t virtualKeyCode = noVirtualKeyCode;
        bool isModifier = false;
        /// What it types without modifiers, in each layout; 0 for nothing.
        std::array<char32_t, layouts> characters{};

        friend bool operator==(const Key &, const Key &) = default;
    };

    struct Modifier {
        std::uint32_t carbonBit;
        std::uint64_t flag;
        std::uint16_t mask;
    };

    [[nodiscard]] std::array<Modifier, 4> modifiers() const;
    [[nodiscard]] std::array<std::uint16_t, 3> locks() const;

    /// By keycode.
    std::array<Key, 256> m_keys{};
    /// Modifier bits of the server; 0 for a modifier that this keyboard does not have.
    std::uint16_t m_optionMask = 0;
    std::uint16_t m_commandMask = 0;
    std::uint16_t m_numLockMask = 0;
    std::uint16_t m_scrollLockMask = 0;
};

} // namespace lumenfold::x11
