#include "service/http/HttpExchange.h"

#include "service/http/OneTimeBody.h"
#include "service/http/Redirects.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <algorithm>
#include <memory>
#include <utility>

namespace lumenfold {
namespace {

/// As browsers have it.
constexpr int mostRedirects = 20;

QNetworkRequest platformRequest(const HttpRequest &request, const QSslConfiguration &security)
{
    QNetworkRequest result(request.address);
    result.setSslConfiguration(security);
    for (const HttpHeader &header : request.headers) {
        result.setRawHeader(header.name, header.value);
    }
    // The library would carry every header along.
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    // One connection for each upload, so that none waits for another's; and what the tests speak is what is spoken.
    result.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    // The key is all that a server is told about the user.
    result.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    return result;
}

std::vector<HttpHeader> headersOf(const QNetworkReply &reply)
{
    std::vector<HttpHeader> headers;
    for (const auto &[name, value] : reply.rawHeaderPairs()) {
        headers.push_back({name, value});
    }
    return headers;
}

int statusOf(const QNetworkReply &reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

/// The library calls every status from 400 on an error of its own; such answers are whole nevertheless.
bool isWholeAnswer(const QNetworkReply &reply)
{
    constexpr int firstErrorStatus = 400;
    const QNetworkReply::NetworkError error = reply.error();
    // It would send the body again where a redirect leads, which is not for it to do.
    if (error == QNetworkReply::NoError || error == QNetworkReply::ContentReSendError) {
        return statusOf(reply) != 0;
    }
    const bool isOfStatus = error == QNetworkReply::ProxyAuthenticationRequiredError ||
                            (error >= QNetworkReply::ContentAccessDenied &&
                             error != QNetworkReply::ProtocolUnknownError && error != QNetworkReply::ProtocolFailure);
    return isOfStatus && statusOf(reply) >= firstErrorStatus;
}

TransportError::Kind kindOf(QNetworkReply::NetworkError error)
{
    using Kind = TransportError::Kind;
    switch (error) {
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyNotFoundError:
        return Kind::unreachable;
    case QNetworkReply::SslHandshakeFailedError:
        return Kind::untrusted;
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::ContentReSendError:
    case QNetworkReply::ProxyConnectionClosedError:
        return Kind::cutOff;
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
        return Kind::timedOut;
    default:
        return Kind::other;
    }
}

} // namespace

HttpExchange::HttpExchange(QNetworkAccessManager &manager, HttpRequest request)
    : m_manager(manager), m_request(std::move(request))
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(m_request.timeOut);
    m_patience.callOnTimeout(this, [this] { fail(TransportError::Kind::timedOut); });
}

HttpExchange::~HttpExchange()
{
    dropReply();
}

void HttpExchange::begin(const QSslConfiguration &security)
{
    m_security = security;
    m_patience.start();
    send();
}

void HttpExchange::send()
{
    dropReply();
    const QNetworkRequest request = platformRequest(m_request, m_security);
    m_body.clear();
    m_sent = 0;
    if (m_request.method == HttpMethod::get) {
        m_reply = m_manager.get(request);
    } else {
        auto body = std::make_unique<OneTimeBody>(m_request.body);
        m_reply = m_request.method == HttpMethod::post ? m_manager.post(request, body.get())
                                                       : m_manager.put(request, body.get());
        body.release()->setParent(m_reply);
    }
    connect(m_reply, &QNetworkReply::readyRead, this, [this] { readWhatIsThere(); });
    connect(m_reply, &QNetworkReply::finished, this, [this] { replyFinished(); });
    connect(m_reply, &QNetworkReply::uploadProgress, this, [this](qint64 sent, qint64) { sentSoFar(sent); });
}

void HttpExchange::dropReply()
{
    if (QNetworkReply *reply = std::exchange(m_reply, nullptr)) {
        // It may be in the middle of telling us something. Deleting it aborts it.
        disconnect(reply, nullptr, this, nullptr);
        reply->deleteLater();
    }
}

void HttpExchange::sentSoFar(qint64 bytes)
{
    if (bytes > m_sent) {
        m_sent = bytes;
        m_patience.start();
    }
}

void HttpExchange::readWhatIsThere()
{
    constexpr qint64 pieceBytes = qint64{64} * 1024;
    for (;;) {
        const qsizetype before = m_body.size();
        m_body.resize(before + pieceBytes);
        const qint64 read = m_reply->read(m_body.data() + before, pieceBytes);
        m_body.resize(before + std::max<qint64>(read, 0));
        if (m_body.size() > m_request.maximumAnswerBytes) {
            fail(TransportError::Kind::tooLarge);
            return;
        }
        if (read <= 0) {
            return;
        }
    }
}

void HttpExchange::replyFinished()
{
    if (!isWholeAnswer(*m_reply)) {
        fail(kindOf(m_reply->error()), m_reply->error());
        return;
    }
    readWhatIsThere();
    if (m_reply == nullptr) {
        return;
    }
    HttpAnswer answer{.status = statusOf(*m_reply), .headers = headersOf(*m_reply), .body = std::move(m_body)};
    std::optional<HttpRequest> next = redirected(m_request, answer);
    if (!next) {
        end(std::move(answer));
    } else if (++m_redirects > mostRedirects) {
        fail(TransportError::Kind::tooManyRedirects);
    } else {
        m_request = std::move(*next);
        send();
    }
}

void HttpExchange::fail(TransportError::Kind kind, int code)
{
    end(tl::unexpected(TransportError(kind, code)));
}

void HttpExchange::end(const HttpOutcome &outcome)
{
    m_patience.stop();
    dropReply();
    if (const auto tell = std::exchange(onEnded, nullptr)) {
        tell(outcome);
    }
}

} // namespace lumenfold
