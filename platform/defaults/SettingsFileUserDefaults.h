#pragma once

#include "platform/defaults/SettingsFile.h"
#include "platform/defaults/SettingsText.h"
#include "platform/defaults/UserDefaults.h"

#include <mutex>

namespace lumenfold {

/// The user's settings in one INI file.
///
/// A file knows only text, so the type of a value is how it is written: `true`, `false`, `1` and `0` are Booleans; a
/// whole number is an integer; numbers separated by commas are an array; `@ByteArray(…)` is binary; anything that is
/// neither a list nor binary is a string as well. A file that cannot be understood reads as empty and is never written
/// to, so that nothing in it is lost; the log says so once, until it changes. May be used from any thread.
class SettingsFileUserDefaults : public UserDefaults {
public:
    /// `path` is absolute; see `standardPath()`.
    explicit SettingsFileUserDefaults(const QString &path);

    /// "LumenFold/LumenFold.conf" in the user's folder for configuration.
    [[nodiscard]] static QString standardPath();

    [[nodiscard]] bool contains(const QString &key) const override;
    [[nodiscard]] std::optional<QString> string(const QString &key) const override;
    [[nodiscard]] bool boolean(const QString &key) const override;
    [[nodiscard]] qint64 integer(const QString &key) const override;
    [[nodiscard]] std::optional<std::vector<double>> numbers(const QString &key) const override;
    [[nodiscard]] std::optional<QByteArray> data(const QString &key) const override;

    void setString(const QString &key, const QString &value) override;
    void setBoolean(const QString &key, bool value) override;
    void setInteger(const QString &key, qint64 value) override;
    void setNumbers(const QString &key, const std::vector<double> &value) override;
    void setData(const QString &key, const QByteArray &value) override;
    void remove(const QString &key) override;

private:
    [[nodiscard]] std::optional<QVariant> value(const QString &key) const;
    void write(const QString &key, const std::optional<QVariant> &value);
    /// Both with the lock held. `refresh` makes the values those of the file, and says why it cannot be written to, if
    /// it cannot.
    std::optional<QString> refresh() const;
    void reportTrouble(const QString &trouble) const;

    mutable std::mutex m_mutex;
    mutable SettingsFile m_file;
    mutable QByteArray m_text;
    mutable ParsedSettings m_settings;
    /// What the log was last told to be wrong with the file; empty while nothing is.
    mutable QString m_reportedTrouble;
};

} // namespace lumenfold
