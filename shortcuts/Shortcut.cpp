#include "shortcuts/Shortcut.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>

#include <cmath>
#include <limits>

namespace lumenfold {
namespace {

const QString keyCodeMember = QStringLiteral("keyCode");
const QString carbonModifiersMember = QStringLiteral("carbonModifiers");
const QString displayMember = QStringLiteral("display");

std::optional<std::uint32_t> unsigned32(const QJsonValue &value)
{
    if (!value.isDouble()) {
        return std::nullopt;
    }
    const double number = value.toDouble();
    if (number < 0 || number > std::numeric_limits<std::uint32_t>::max() || std::trunc(number) != number) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(number);
}

} // namespace

std::optional<QByteArray> encodeShortcut(const Shortcut &shortcut)
{
    if (!shortcut.display.isValidUtf16()) {
        return std::nullopt;
    }
    const QJsonObject object{{keyCodeMember, static_cast<qint64>(shortcut.keyCode)},
                             {carbonModifiersMember, static_cast<qint64>(shortcut.carbonModifiers)},
                             {displayMember, shortcut.display}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<Shortcut> decodeShortcut(const QByteArray &data)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(data, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) {
        return std::nullopt;
    }
    const QJsonObject object = document.object();
    const auto keyCode = unsigned32(object.value(keyCodeMember));
    const auto carbonModifiers = unsigned32(object.value(carbonModifiersMember));
    const QJsonValue display = object.value(displayMember);
    if (!keyCode || !carbonModifiers || !display.isString()) {
        return std::nullopt;
    }
    return Shortcut{*keyCode, *carbonModifiers, display.toString()};
}

} // namespace lumenfold
