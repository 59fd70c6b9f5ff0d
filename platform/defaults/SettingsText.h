#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVariant>

#include <optional>

/// The contents of a settings file (Qt's INI dialect) as a value, without the file.
namespace lumenfold {

using SettingsValues = QMap<QString, QVariant>;

/// How much of a text could be understood.
enum class SettingsCondition {
    sound,
    /// Only the last line is broken off, as after a crash; the lines before it count.
    cutOff,
    /// Some lines are no settings; the others count.
    damaged,
    /// Not a text at all.
    garbage,
    /// It could not be looked at, because there is no room for a temporary file.
    unknown,
};

struct ParsedSettings {
    SettingsCondition condition = SettingsCondition::sound;
    /// Keys of a section other than [General] begin with the section's name and "/".
    SettingsValues values;
};

[[nodiscard]] ParsedSettings parseSettings(const QByteArray &text);

/// The text with one value replaced or, for no value, removed. All other keys, of whatever section and type, stay.
/// Nothing when there is no room for a temporary file.
[[nodiscard]] std::optional<QByteArray> editedSettings(const QByteArray &text, const QString &key,
                                                       const std::optional<QVariant> &value);

} // namespace lumenfold
