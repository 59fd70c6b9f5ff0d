#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace lumenfold {

/// The store of the user's settings. Nothing is cached: each read looks at the store, so that a change made by another
/// program is seen by the next read. A value of another type than asked for counts as absent. Write failures are
/// logged.
class UserDefaults {
public:
    UserDefaults() = default;
    UserDefaults(const UserDefaults &) = delete;
    UserDefaults &operator=(const UserDefaults &) = delete;
    virtual ~UserDefaults() = default;

    [[nodiscard]] virtual bool contains(const QString &key) const = 0;
    [[nodiscard]] virtual std::optional<QString> string(const QString &key) const = 0;
    /// Absent or not a Boolean: false.
    [[nodiscard]] virtual bool boolean(const QString &key) const = 0;
    /// Absent or not a whole number: 0.
    [[nodiscard]] virtual qint64 integer(const QString &key) const = 0;
    /// An array in which every element is a number.
    [[nodiscard]] virtual std::optional<std::vector<double>> numbers(const QString &key) const = 0;
    /// A binary value; a text does not count.
    [[nodiscard]] virtual std::optional<QByteArray> data(const QString &key) const = 0;

    virtual void setString(const QString &key, const QString &value) = 0;
    virtual void setBoolean(const QString &key, bool value) = 0;
    virtual void setInteger(const QString &key, qint64 value) = 0;
    virtual void setNumbers(const QString &key, const std::vector<double> &value) = 0;
    virtual void setData(const QString &key, const QByteArray &value) = 0;
    virtual void remove(const QString &key) = 0;
};

} // namespace lumenfold
