#include "service/HttpLumenfoldService.h"

#include "app/configuration/AppConfig.h"
#include "platform/workspace/Workspace.h"
#include "service/AuthService.h"
#include "service/ServiceError.h"
#include "service/TemplateSelection.h"
#include "service/http/HttpClient.h"
#include "service/wire/Wire.h"

#include <QStringDecoder>
#include <QUuid>

namespace lumenfold {
namespace {

using Png = std::optional<QByteArray>;
using Templates = std::optional<std::vector<LumenfoldTemplate>>;

/// A thousand templates with long addresses are a megabyte.
constexpr qint64 mostTemplateListBytes = qint64{16} * 1024 * 1024;
/// A server's own words are a line; what is longer is a page, of which nobody reads the rest.
constexpr qsizetype mostErrorText = 2000;

HttpHeader authorization(const QByteArray &apiKey)
{
    return {"Authorization", "ApiKey " + apiKey};
}

bool isSuccess(int status)
{
    return status >= 200 && status <= 299;
}

std::optional<QString> utf8Text(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder.decode(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text.left(mostErrorText));
}

/// A server may repeat what it was sent, and this text is logged.
ServiceError serverError(const HttpAnswer &answer, const QByteArray &apiKey = {})
{
    QByteArray body = answer.body;
    if (!apiKey.isEmpty()) {
        body.replace(apiKey, "…");
    }
    return ServiceError::server(answer.status, utf8Text(body));
}

QString newFileName()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + QStringLiteral(".png");
}

} // namespace

HttpLumenfoldService::HttpLumenfoldService(const Collaborators &collaborators) : m_with(collaborators) {}

QCoro::Task<QUrl> HttpLumenfoldService::save(Image image)
{
    const QByteArray key = co_await apiKey();
    // Waits for a capture that is still being encoded, or reads the file of a stored one.
    const std::function<Png()> encode = [image] { return image.pngData(); };
    const Png png = co_await m_background.run<Png>(encode);
    if (!png) {
        throw ServiceError::encodingFailed();
    }
    const QUrl signedUrl = co_await requestSignedUrl(newFileName(), key);
    co_await put(*png, signedUrl);
    co_return signedUrl.adjusted(QUrl::RemoveQuery);
}

QCoro::Task<> HttpLumenfoldService::openInLumenFold(Image image)
{
    const QUrl uploaded = co_await save(image);
    m_with.workspace.open(
        m_with.config.studioImportURL(QString::fromLatin1(uploaded.toEncoded()), m_with.templates.selectedId()));
}

QCoro::Task<std::vector<LumenfoldTemplate>> HttpLumenfoldService::fetchTemplates()
{
    const QByteArray key = co_await apiKey();
    const HttpRequest request{.address = m_with.config.templatesEndpoint(),
                              .headers = {authorization(key)},
                              .maximumAnswerBytes = mostTemplateListBytes};
    const HttpAnswer answer = co_await m_with.http.send(request);
    validate(answer, key);
    const std::function<Templates()> read = [json = answer.body] { return readTemplates(json); };
    Templates templates = co_await m_background.run<Templates>(read);
    if (!templates) {
        throw ServiceError::decoding();
    }
    co_return std::move(*templates);
}

QCoro::Task<QByteArray> HttpLumenfoldService::apiKey()
{
    const std::optional<QString> stored = co_await m_with.auth.requestApiKey();
    const QByteArray key = stored.value_or(QString()).toUtf8();
    // A key that cannot stand in a header is nobody's; another one is asked for as if there were none.
    if (!stored || !isHeaderValue(key)) {
        throw ServiceError::notAuthenticated();
    }
    co_return key;
}

QCoro::Task<QUrl> HttpLumenfoldService::requestSignedUrl(QString fileName, QByteArray apiKey)
{
    const HttpRequest request{.address = m_with.config.signedUrlEndpoint(),
                              .method = HttpMethod::post,
                              .headers = {authorization(apiKey), {"Content-Type", "application/json"}},
                              .body = signedUrlRequestBody(fileName)};
    const HttpAnswer answer = co_await m_with.http.send(request);
    validate(answer, apiKey);
    const std::optional<QUrl> url = readSignedUrl(answer.body);
    if (!url) {
        throw ServiceError::decoding();
    }
    co_return *url;
}

QCoro::Task<> HttpLumenfoldService::put(QByteArray png, QUrl signedUrl)
{
    // No key: the signature in the address is all that the storage asks for.
    const HttpRequest request{
        .address = signedUrl, .method = HttpMethod::put, .headers = {{"Content-Type", "image/png"}}, .body = png};
    const HttpAnswer answer = co_await m_with.http.send(request);
    if (!isSuccess(answer.status)) {
        throw serverError(answer);
    }
}

void HttpLumenfoldService::validate(const HttpAnswer &answer, const QByteArray &apiKey)
{
    if (answer.status == 401 || answer.status == 403) {
        m_with.auth.signOut();
        throw ServiceError::notAuthenticated();
    }
    if (!isSuccess(answer.status)) {
        throw serverError(answer, apiKey);
    }
}

} // namespace lumenfold
