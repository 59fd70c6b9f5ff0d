#pragma once

#include <QString>

#include <cstdint>

/// A shortcut as a menu item takes it. Pure.
namespace lumenfold {

/// The character that the key of this macOS virtual key code types on the US ANSI keyboard without modifiers; for the
/// keys that type none, the character that macOS has for them. Empty for every other key.
[[nodiscard]] QString keyEquivalentForKeyCode(std::uint32_t keyCode);

/// An OR of keyFlags:: for an OR of carbon:: bits; other bits mean nothing.
[[nodiscard]] std::uint64_t modifierMaskForCarbon(std::uint32_t carbonModifiers);

} // namespace lumenfold
