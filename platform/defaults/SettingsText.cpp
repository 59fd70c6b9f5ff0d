#include "platform/defaults/SettingsText.h"

#include <QSettings>
#include <QStringDecoder>
#include <QTemporaryFile>

#include <functional>

namespace lumenfold {
namespace {

/// QSettings speaks its dialect to files only, and remembers a file by name, size and time to the millisecond. Under a
/// name of its own each time, it reads what stands there.
std::optional<QByteArray> throughSettings(const QByteArray &text, const std::function<void(QSettings &)> &use)
{
    QTemporaryFile file;
    if (!file.open() || file.write(text) != text.size() || !file.flush()) {
        return std::nullopt;
    }
    {
        QSettings settings(file.fileName(), QSettings::IniFormat);
        use(settings);
    }
    QFile result(file.fileName());
    if (!result.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return result.readAll();
}

bool isText(const QByteArray &bytes)
{
    if (bytes.contains('\0')) {
        return false;
    }
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = decoder(bytes);
    return !decoder.hasError();
}

/// The condition is `sound` or `damaged` here, or `unknown`.
ParsedSettings parsed(const QByteArray &text)
{
    ParsedSettings settings;
    const auto takeValues = [&settings](const QSettings &file) {
        for (const QString &key : file.allKeys()) {
            settings.values.insert(key, file.value(key));
        }
        // Only now: sections are parsed when they are first looked into.
        settings.condition =
            file.status() == QSettings::NoError ? SettingsCondition::sound : SettingsCondition::damaged;
    };
    const bool isRead = throughSettings(text, takeValues).has_value();
    if (!isRead) {
        return {.condition = SettingsCondition::unknown, .values = {}};
    }
    return settings;
}

} // namespace

ParsedSettings parseSettings(const QByteArray &text)
{
    if (text.isEmpty()) {
        return {};
    }
    if (!isText(text)) {
        return {.condition = SettingsCondition::garbage, .values = {}};
    }
    ParsedSettings whole = parsed(text);
    const qsizetype endOfLastWholeLine = text.lastIndexOf('\n') + 1;
    if (whole.condition == SettingsCondition::damaged && endOfLastWholeLine < text.size()) {
        const ParsedSettings withoutLastLine = parsed(text.left(endOfLastWholeLine));
        if (withoutLastLine.condition == SettingsCondition::sound && !withoutLastLine.values.isEmpty()) {
            return {.condition = SettingsCondition::cutOff, .values = withoutLastLine.values};
        }
    }
    return whole;
}

std::optional<QByteArray> editedSettings(const QByteArray &text, const QString &key,
                                         const std::optional<QVariant> &value)
{
    bool isWritten = false;
    std::optional<QByteArray> edited = throughSettings(text, [&](QSettings &settings) {
        if (value) {
            settings.setValue(key, *value);
        } else {
            settings.remove(key);
        }
        settings.sync();
        isWritten = settings.isWritable() && settings.status() != QSettings::AccessError;
    });
    return isWritten ? edited : std::nullopt;
}

} // namespace lumenfold
