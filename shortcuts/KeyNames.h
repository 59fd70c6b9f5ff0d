#pragma once

#include <QString>

#include <cstdint>
#include <optional>

/// The parts of a shortcut, as they follow from a key event. Of the modifier flags (keyFlags::) only shift, control,
/// option and command are read; caps lock and every other bit mean nothing here.
namespace lumenfold {

/// The flags as a mask of carbon:: bits.
[[nodiscard]] std::uint32_t carbonModifiers(std::uint64_t flags);

/// The symbols of the held modifiers, always in the order ⌃⌥⇧⌘.
[[nodiscard]] QString modifierSymbols(std::uint64_t flags);

/// What a key is called. Digits, punctuation and the named keys are told by their place, so that shift does not change
/// them; every other key is called by what it types (in upper case), or "?" when it types nothing.
[[nodiscard]] QString keyLabel(std::uint32_t keyCode, const std::optional<QString> &charactersIgnoringModifiers);

} // namespace lumenfold
