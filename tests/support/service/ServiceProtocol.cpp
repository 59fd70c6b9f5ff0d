#include "tests/support/service/ServiceProtocol.h"

#include <QBuffer>
#include <QColor>
#include <QCryptographicHash>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrlQuery>

/// A resource in a static library waits for being asked for. Outside of namespaces, as the macro wants it.
static void initializePagesOfTheDouble()
{
    Q_INIT_RESOURCE(pages);
}

namespace lumenfold::test {
namespace {

constexpr QByteArrayView userPath = "/v1/user";
constexpr QByteArrayView signedUrlPath = "/v1/user/upload/signed-url";
constexpr QByteArrayView templatesPath = "/v1/templates";
constexpr QByteArrayView storagePrefix = "/storage/";
constexpr QByteArrayView previewPrefix = "/previews/";

ServiceReply json(const QJsonObject &object)
{
    return {.headers = {{"Content-Type", "application/json"}},
            .body = QJsonDocument(object).toJson(QJsonDocument::Compact)};
}

ServiceReply failure(int status, const QByteArray &text)
{
    return {.status = status, .headers = {{"Content-Type", "text/plain"}}, .body = text};
}

ServiceReply html(const QString &content)
{
    return {.headers = {{"Content-Type", "text/html; charset=utf-8"}},
            .body =
                QStringLiteral("<!doctype html><title>LumenFold, offline</title><body style=\"font-family:sans-serif\">"
                               "%1</body>")
                    .arg(content)
                    .toUtf8()};
}

ServiceReply editor()
{
    initializePagesOfTheDouble();
    QFile file(QStringLiteral(":/lumenfold/double/editor.html"));
    file.open(QIODevice::ReadOnly);
    return {.headers = {{"Content-Type", "text/html; charset=utf-8"}}, .body = file.readAll()};
}

QByteArray signatureFor(const QByteArray &path)
{
    return QCryptographicHash::hash("the double's secret" + path, QCryptographicHash::Sha256).toHex().left(16);
}

} // namespace

ServiceProtocol::Endpoint ServiceProtocol::endpointOf(const ReceivedRequest &request)
{
    const QByteArray path = request.path();
    if (path == userPath) {
        return Endpoint::user;
    }
    if (path == signedUrlPath) {
        return Endpoint::signedUrl;
    }
    if (path == templatesPath) {
        return Endpoint::templates;
    }
    if (path.startsWith(storagePrefix)) {
        return Endpoint::storage;
    }
    return path.startsWith(previewPrefix) ? Endpoint::preview : Endpoint::page;
}

ServiceReply ServiceProtocol::answerTo(const ReceivedRequest &request, const QByteArray &base)
{
    const Endpoint endpoint = endpointOf(request);
    switch (endpoint) {
    case Endpoint::storage:
        return storage(request);
    case Endpoint::preview:
        return preview(request);
    case Endpoint::page:
        return page(request);
    case Endpoint::user:
    case Endpoint::signedUrl:
    case Endpoint::templates:
        break;
    }
    if (!isAuthorized(request)) {
        return failure(401, "unknown API key");
    }
    if (request.method != (endpoint == Endpoint::signedUrl ? "POST" : "GET")) {
        return failure(405, "not this method");
    }
    if (endpoint == Endpoint::user) {
        return user();
    }
    return endpoint == Endpoint::signedUrl ? signedUrl(request, base) : templates(base);
}

bool ServiceProtocol::isAuthorized(const ReceivedRequest &request) const
{
    return request.header("Authorization") == "ApiKey " + apiKey;
}

ServiceReply ServiceProtocol::user() const
{
    return json({{QStringLiteral("user"), QJsonObject{{QStringLiteral("email"), QString::fromUtf8(email)},
                                                      {QStringLiteral("firstname"), QStringLiteral("Ada")},
                                                      {QStringLiteral("tier"), QStringLiteral("pro")}}}});
}

ServiceReply ServiceProtocol::signedUrl(const ReceivedRequest &request, const QByteArray &base)
{
    const QJsonObject wanted = QJsonDocument::fromJson(request.body).object();
    const QByteArray fileName = wanted.value(QLatin1String("fileName")).toString().toUtf8();
    if (request.header("Content-Type") != "application/json" || fileName.isEmpty() || fileName.contains('/')) {
        return failure(400, "no file name");
    }
    const QByteArray path = storagePrefix.toByteArray() + fileName.toPercentEncoding();
    return json({{QStringLiteral("url"),
                  QString::fromUtf8(base + path + "?signature=" + signatureFor(path) + "&expires=%2B600s")}});
}

ServiceReply ServiceProtocol::storage(const ReceivedRequest &request)
{
    const QByteArray path = request.path();
    if (request.method == "GET") {
        return stored.contains(path)
                   ? ServiceReply{.headers = {{"Content-Type", "image/png"}}, .body = stored.value(path)}
                   : failure(404, "nothing here");
    }
    if (request.method != "PUT" || request.header("Content-Type") != "image/png" ||
        request.query() != "signature=" + signatureFor(path) + "&expires=%2B600s") {
        return failure(403, "wrong signature");
    }
    stored.insert(path, request.body);
    return {};
}

ServiceReply ServiceProtocol::templates(const QByteArray &base) const
{
    QJsonArray list;
    for (int number = 1; number <= templateCount; ++number) {
        list.append(QJsonObject{
            {QStringLiteral("_id"), QStringLiteral("template-%1").arg(number)},
            {QStringLiteral("name"), QStringLiteral("Template %1").arg(number)},
            {QStringLiteral("previewUrl"),
             QStringLiteral("%1/previews/%2.png").arg(QString::fromUtf8(base)).arg(number)},
            {QStringLiteral("editedAt"), QStringLiteral("2024-%1-%2T10:00:00Z")
                                             .arg(1 + number % 12, 2, 10, QLatin1Char('0'))
                                             .arg(1 + number % 28, 2, 10, QLatin1Char('0'))},
        });
    }
    return json({{QStringLiteral("templates"), list}});
}

ServiceReply ServiceProtocol::preview(const ReceivedRequest &request)
{
    QImage picture(320, 240, QImage::Format_RGB32);
    picture.fill(QColor::fromHsv(qHash(request.path()) % 360, 120, 220));
    ServiceReply reply{.headers = {{"Content-Type", "image/png"}}};
    QBuffer buffer(&reply.body);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return reply;
}

ServiceReply ServiceProtocol::page(const ReceivedRequest &request) const
{
    const auto own = pages.find(request.path());
    if (own != pages.end()) {
        return {.headers = {{"Content-Type", "text/html; charset=utf-8"}}, .body = *own};
    }
    if (request.path() == "/integration/electron") {
        return editor();
    }
    const QUrlQuery query(QString::fromUtf8(request.query()));
    if (request.path() == "/studio") {
        return html(QStringLiteral("<h1>Studio</h1><p>Template: %1</p><img src=\"%2\" style=\"max-width:90%\">")
                        .arg(query.queryItemValue(QStringLiteral("id"), QUrl::FullyDecoded).toHtmlEscaped(),
                             query.queryItemValue(QStringLiteral("src"), QUrl::FullyDecoded).toHtmlEscaped()));
    }
    if (request.path() == "/dashboard/account") {
        return html(QStringLiteral("<h1>API key</h1><pre id=\"api-key\">%1</pre>")
                        .arg(QString::fromUtf8(apiKey).toHtmlEscaped()));
    }
    return failure(404, "no such page");
}

} // namespace lumenfold::test
