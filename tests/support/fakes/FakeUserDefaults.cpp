#include "tests/support/fakes/FakeUserDefaults.h"

#include <utility>

namespace lumenfold::test {

template <typename T>
std::optional<T> FakeUserDefaults::value(const QString &key) const
{
    const auto found = m_values.constFind(key);
    if (found == m_values.cend() || !std::holds_alternative<T>(*found)) {
        return std::nullopt;
    }
    return std::get<T>(*found);
}

void FakeUserDefaults::write(const QString &key, Value value)
{
    m_writes.append(key);
    m_values[key] = std::move(value);
}

bool FakeUserDefaults::contains(const QString &key) const
{
    return m_values.contains(key);
}

std::optional<QString> FakeUserDefaults::string(const QString &key) const
{
    return value<QString>(key);
}

bool FakeUserDefaults::boolean(const QString &key) const
{
    return value<bool>(key).value_or(false);
}

qint64 FakeUserDefaults::integer(const QString &key) const
{
    return value<qint64>(key).value_or(0);
}

std::optional<std::vector<double>> FakeUserDefaults::numbers(const QString &key) const
{
    return value<std::vector<double>>(key);
}

std::optional<QByteArray> FakeUserDefaults::data(const QString &key) const
{
    return value<QByteArray>(key);
}

void FakeUserDefaults::setString(const QString &key, const QString &value)
{
    write(key, value);
}

void FakeUserDefaults::setBoolean(const QString &key, bool value)
{
    write(key, value);
}

void FakeUserDefaults::setInteger(const QString &key, qint64 value)
{
    write(key, value);
}

void FakeUserDefaults::setNumbers(const QString &key, const std::vector<double> &value)
{
    write(key, value);
}

void FakeUserDefaults::setData(const QString &key, const QByteArray &value)
{
    write(key, value);
}

void FakeUserDefaults::remove(const QString &key)
{
    m_writes.append(key);
    m_values.remove(key);
}

void FakeUserDefaults::setRaw(const QString &key, Value value)
{
    m_values[key] = std::move(value);
}

QStringList FakeUserDefaults::keys() const
{
    return m_values.keys();
}

QStringList FakeUserDefaults::writes() const
{
    return m_writes;
}

} // namespace lumenfold::test
