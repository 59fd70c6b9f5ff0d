#include "service/wire/Wire.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumenfold {
namespace {

constexpr QLatin1String untitled("Untitled template");

std::optional<QString> text(const QJsonValue &value)
{
    if (!value.isString()) {
        return std::nullopt;
    }
    QString result = value.toString();
    return result.isValidUtf16() ? std::optional(std::move(result)) : std::nullopt;
}

bool isTextOrAbsent(const QJsonValue &value)
{
    return value.isUndefined() || value.isNull() || text(value);
}

std::optional<LumenfoldTemplate> readTemplate(const QJsonObject &object)
{
    const std::optional<QString> id = text(object.value(QLatin1String("_id")));
    if (!id) {
        return std::nullopt;
    }
    return LumenfoldTemplate{
        .id = *id,
        .name = text(object.value(QLatin1String("name"))).value_or(untitled),
        .previewUrl = text(object.value(QLatin1String("previewUrl"))),
        .editedAt = text(object.value(QLatin1String("editedAt"))),
    };
}

} // namespace

std::optional<LumenfoldUser> readUser(const QByteArray &json)
{
    const QJsonObject user = QJsonDocument::fromJson(json).object().value(QLatin1String("user")).toObject();
    const std::optional<QString> email = text(user.value(QLatin1String("email")));
    const QJsonValue firstname = user.value(QLatin1String("firstname"));
    const QJsonValue tier = user.value(QLatin1String("tier"));
    if (!email || !isTextOrAbsent(firstname) || !isTextOrAbsent(tier)) {
        return std::nullopt;
    }
    return LumenfoldUser{.email = *email, .firstname = text(firstname), .tier = text(tier)};
}

std::optional<std::vector<LumenfoldTemplate>> readTemplates(const QByteArray &json)
{
    const QJsonValue list = QJsonDocument::fromJson(json).object().value(QLatin1String("templates"));
    if (!list.isArray()) {
        return std::nullopt;
    }
    const QJsonArray entries = list.toArray();
    std::vector<LumenfoldTemplate> templates;
    templates.reserve(static_cast<std::size_t>(entries.size()));
    for (const QJsonValue entry : entries) {
        std::optional<LumenfoldTemplate> one = readTemplate(entry.toObject());
        if (!one) {
            return std::nullopt;
        }
        templates.push_back(std::move(*one));
    }
    return templates;
}

std::optional<QUrl> readSignedUrl(const QByteArray &json)
{
    const QJsonObject answer = QJsonDocument::fromJson(json).object();
    const std::optional<QString> address = text(answer.value(QLatin1String("url")));
    if (!address) {
        return std::nullopt;
    }
    // Nothing in it may be mended: the signature is of exactly these characters.
    QUrl url(*address, QUrl::StrictMode);
    return url.isValid() && !url.isRelative() ? std::optional(std::move(url)) : std::nullopt;
}

QByteArray signedUrlRequestBody(const QString &fileName)
{
    const QJsonObject body{
        {QStringLiteral("fileName"), fileName},
        {QStringLiteral("contentType"), QStringLiteral("image/png")},
        {QStringLiteral("type"), QStringLiteral("image")},
    };
    return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

} // namespace lumenfold
