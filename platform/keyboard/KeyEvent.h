#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace lumenfold {

/// The numbers are the event types of a macOS event tap, which the rules of the program are written in.
enum class KeyEventType : std::uint32_t {
    keyDown = 10,
    keyUp = 11,
    tapDisabledByTimeout = 0xFFFFFFFE,
    tapDisabledByUserInput = 0xFFFFFFFF,
};

/// Modifier flags of key events (macOS numbering). Other bits may be set and mean nothing here, apart from caps lock.
namespace keyFlags {
inline constexpr std::uint64_t capsLock = 0x10000;
inline constexpr std::uint64_t shift = 0x20000;
inline constexpr std::uint64_t control = 0x40000;
inline constexpr std::uint64_t option = 0x80000;
inline constexpr std::uint64_t command = 0x100000;
inline constexpr std::uint64_t numericPad = 0x200000;
} // namespace keyFlags

/// Carbon modifier bits: the form in which shortcuts are stored and hotkeys registered.
namespace carbon {
inline constexpr std::uint32_t cmdKey = 0x0100;
inline constexpr std::uint32_t shiftKey = 0x0200;
inline constexpr std::uint32_t optionKey = 0x0800;
inline constexpr std::uint32_t controlKey = 0x1000;
} // namespace carbon

struct KeyEvent {
    KeyEventType type = KeyEventType::keyDown;
    /// macOS virtual key code: the key's place on the board, whatever the layout prints on it.
    std::uint32_t keyCode = 0;
    std::uint64_t flags = 0;
    bool isAutorepeat = false;
    /// What the key types in the active layout with no modifier held. A key that types nothing gives what stands on it
    /// ("F5", "↖") where it is one that shortcuts use, and nothing otherwise.
    std::optional<QString> charactersIgnoringModifiers;
};

} // namespace lumenfold
