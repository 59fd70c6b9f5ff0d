#pragma once

#include "platform/defaults/UserDefaults.h"

#include <QMap>
#include <QStringList>

#include <variant>

namespace lumenfold::test {

/// A store in memory that knows the type of every value: a value of another type than asked for is absent.
class FakeUserDefaults : public UserDefaults {
public:
    /// An array, a text and so on, as another program may have left them. `QStringList` is an array that does not hold
    /// numbers only.
    using Value = std::variant<QString, bool, qint64, std::vector<double>, QByteArray, QStringList>;

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

    /// Puts a value of any type there, without counting as a write of the program.
    void setRaw(const QString &key, Value value);

    [[nodiscard]] QStringList keys() const;
    /// The keys that the program has set or removed, in order, each as often as it did.
    [[nodiscard]] QStringList writes() const;

private:
    template <typename T>
    [[nodiscard]] std::optional<T> value(const QString &key) const;
    void write(const QString &key, Value value);

    QMap<QString, Value> m_values;
    QStringList m_writes;
};

} // namespace lumenfold::test
