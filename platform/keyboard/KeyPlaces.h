#pragma once

#include <QStringView>

#include <cstdint>
#include <optional>
#include <string_view>

namespace lumenfold {

/// The macOS virtual key code of the key that XKB calls `keyName` ("AE01", "LSGT", "FK05", ...): two names for the same
/// place on the board, whatever the layout prints there. Nothing for a key that no such board has.
[[nodiscard]] std::optional<std::uint32_t> virtualKeyCode(std::string_view keyName);

/// What stands on a key that types nothing by itself, such as "F5", or nothing unless Num Lock is on; empty for any
/// other key.
[[nodiscard]] QStringView engravedName(std::uint32_t keyCode);

/// Whether the key belongs to the numeric pad.
[[nodiscard]] bool isOnNumericPad(std::uint32_t keyCode);

} // namespace lumenfold
