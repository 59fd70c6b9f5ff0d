#include "platform/defaults/SettingsFileUserDefaults.h"

#include <QDebug>
#include <QLocale>
#include <QLockFile>
#include <QStandardPaths>

#include <cmath>

namespace lumenfold {
namespace {

/// How long a writer waits for another program that is writing the same file. QSettings uses the same lock.
constexpr int lockWaitMilliseconds = 20;

std::optional<double> number(const QString &text)
{
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    return isNumber && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

QString numberText(double value)
{
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

} // namespace

SettingsFileUserDefaults::SettingsFileUserDefaults(const QString &path) : m_file(path) {}

QString SettingsFileUserDefaults::standardPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/LumenFold/LumenFold.conf");
}

bool SettingsFileUserDefaults::contains(const QString &key) const
{
    return value(key).has_value();
}

std::optional<QString> SettingsFileUserDefaults::string(const QString &key) const
{
    const std::optional<QVariant> found = value(key);
    if (!found || found->typeId() != QMetaType::QString) {
        return std::nullopt;
    }
    return found->toString();
}

bool SettingsFileUserDefaults::boolean(const QString &key) const
{
    const QString text = string(key).value_or(QString());
    return text == u"1" || text.compare(u"true", Qt::CaseInsensitive) == 0;
}

qint64 SettingsFileUserDefaults::integer(const QString &key) const
{
    return string(key).value_or(QString()).toLongLong();
}

std::optional<std::vector<double>> SettingsFileUserDefaults::numbers(const QString &key) const
{
    const std::optional<QVariant> found = value(key);
    // QSettings writes an empty list as no value, and a list of one as that one.
    if (!found ||
        (found->isValid() && found->typeId() != QMetaType::QStringList && found->typeId() != QMetaType::QString)) {
        return std::nullopt;
    }
    std::vector<double> values;
    for (const QString &element : found->toStringList()) {
        const std::optional<double> elementNumber = number(element);
        if (!elementNumber) {
            return std::nullopt;
        }
        values.push_back(*elementNumber);
    }
    return values;
}

std::optional<QByteArray> SettingsFileUserDefaults::data(const QString &key) const
{
    const std::optional<QVariant> found = value(key);
    if (!found || found->typeId() != QMetaType::QByteArray) {
        return std::nullopt;
    }
    return found->toByteArray();
}

void SettingsFileUserDefaults::setString(const QString &key, const QString &value)
{
    write(key, value);
}

void SettingsFileUserDefaults::setBoolean(const QString &key, bool value)
{
    write(key, value);
}

void SettingsFileUserDefaults::setInteger(const QString &key, qint64 value)
{
    write(key, value);
}

void SettingsFileUserDefaults::setNumbers(const QString &key, const std::vector<double> &value)
{
    QStringList texts;
    for (const double element : value) {
        texts.append(numberText(element));
    }
    write(key, texts);
}

void SettingsFileUserDefaults::setData(const QString &key, const QByteArray &value)
{
    write(key, value);
}

void SettingsFileUserDefaults::remove(const QString &key)
{
    write(key, std::nullopt);
}

std::optional<QVariant> SettingsFileUserDefaults::value(const QString &key) const
{
    const std::lock_guard lock(m_mutex);
    refresh();
    const auto found = m_settings.values.constFind(key);
    return found == m_settings.values.cend() ? std::nullopt : std::optional(*found);
}

void SettingsFileUserDefaults::write(const QString &key, const std::optional<QVariant> &value)
{
    const auto failed = [&key](const QString &why) {
        qWarning().noquote().nospace() << "LumenFold: cannot save the setting " << key << ": " << why;
    };
    const std::lock_guard lock(m_mutex);
    // Without a folder there is nobody to wait for and nothing to lock in; the write will make it.
    QLockFile fileLock(m_file.path() + QStringLiteral(".lock"));
    if (!fileLock.tryLock(lockWaitMilliseconds) && fileLock.error() == QLockFile::LockFailedError) {
        failed(QStringLiteral("Another program is writing the settings file"));
        return;
    }
    if (const std::optional<QString> obstacle = refresh()) {
        failed(*obstacle);
        return;
    }
    if (!value && !m_settings.values.contains(key)) {
        return;
    }
    const std::optional<QByteArray> edited = editedSettings(m_text, key, value);
    if (!edited) {
        failed(QStringLiteral("No temporary file could be made"));
        return;
    }
    if (const auto replaced = m_file.replace(*edited); !replaced) {
        failed(replaced.error());
    }
}

std::optional<QString> SettingsFileUserDefaults::refresh() const
{
    const tl::expected<QByteArray, QString> text = m_file.read();
    if (!text) {
        m_text.clear();
        m_settings = {};
        reportTrouble(QStringLiteral("cannot be read, so the defaults count: ") + text.error());
        return QStringLiteral("The settings file cannot be read: ") + text.error();
    }
    if (*text != m_text) {
        m_text = *text;
        m_settings = parseSettings(m_text);
    }
    switch (m_settings.condition) {
    case SettingsCondition::sound:
        m_reportedTrouble.clear();
        return std::nullopt;
    case SettingsCondition::cutOff:
        reportTrouble(QStringLiteral("is cut off; its last line does not count"));
        return std::nullopt;
    case SettingsCondition::damaged:
        reportTrouble(QStringLiteral("is damaged; what cannot be read in it counts as not set"));
        return QStringLiteral("The settings file is damaged and is left as it is");
    case SettingsCondition::garbage:
        reportTrouble(QStringLiteral("is no settings file, so the defaults count"));
        return QStringLiteral("The settings file is damaged and is left as it is");
    case SettingsCondition::unknown:
        // Looked at again by the next read.
        m_text.clear();
        reportTrouble(QStringLiteral("cannot be read for want of a temporary file, so the defaults count"));
        return QStringLiteral("No temporary file could be made");
    }
    return std::nullopt;
}

void SettingsFileUserDefaults::reportTrouble(const QString &trouble) const
{
    if (trouble != m_reportedTrouble) {
        m_reportedTrouble = trouble;
        qWarning().noquote().nospace() << "LumenFold: the settings file " << m_file.path() << " " << trouble;
    }
}

} // namespace lumenfold
