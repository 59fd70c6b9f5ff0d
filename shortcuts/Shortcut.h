#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>

namespace lumenfold {

/// A key combination and the text that shows it to the user.
struct Shortcut {
    /// macOS virtual key code: the key's place on the board.
    std::uint32_t keyCode = 0;
    /// An OR of the carbon:: bits.
    std::uint32_t carbonModifiers = 0;
    /// Modifier symbols followed by the key label, such as "⌥⌘1".
    QString display;

    friend bool operator==(const Shortcut &, const Shortcut &) = default;
};

/// The stored form: a compact UTF-8 JSON object with the members "keyCode", "carbonModifiers" and "display". Nothing
/// when the display text is no valid Unicode.
[[nodiscard]] std::optional<QByteArray> encodeShortcut(const Shortcut &shortcut);

/// Reads the stored form. Nothing unless it is a JSON object in which all three members are there and have their type;
/// numbers must be whole and fit 32 bits. The values themselves are taken as they are.
[[nodiscard]] std::optional<Shortcut> decodeShortcut(const QByteArray &data);

} // namespace lumenfold
