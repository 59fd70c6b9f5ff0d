#include "service/http/HttpExchange.h"

#include "service/http/Redirects.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <algorithm>
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

/// The library calls many a status an error; such answers are whole nevertheless.
bool isWholeAnswer(const QNetworkReply &reply)
{
    if (statusOf(reply) == 0) {
        return false;
    }
    switch (reply.error()) {
    case QNetworkReply::NoError:
    case QNetworkReply::ProxyAuthenticationRequiredError:
    case QNetworkReply::ProtocolInvalidOperationError:
        return true;
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::ProtocolFailure:
        return false;
    default:
        return reply.error() >= QNetworkReply::ContentAccessDenied;
    }
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
    case QNetworkReply::ProxyConnectionClosedError:
        return Kind::cutOff;
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
        return Kind::timedOut;
    case QNetworkReply::ProtocolFailure:
        return Kind::notHttp;
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
    m_connections = 0;
    switch (m_request.method) {
    case HttpMethod::get:
        m_reply = m_manager.get(request);
        break;
    case HttpMethod::post:
        m_reply = m_manager.post(request, m_request.body);
        break;
    case HttpMethod::put:
        m_reply = m_manager.put(request, m_request.body);
        break;
    }
    connect(m_reply, &QNetworkReply::readyRead, this, [this] { readWhatIsThere(); });
    connect(m_reply, &QNetworkReply::finished, this, [this] { replyFinished(); });
    connect(m_reply, &QNetworkReply::uploadProgress, this, [this](qint64 sent, qint64) { sentSoFar(sent); });
    connect(m_reply, &QNetworkReply::socketStartedConnecting, this, [this] { connecting(); });
}

void HttpExchange::dropReply()
{
    if (QNetworkReply *reply = std::exchange(m_reply, nullptr)) {
        // Aborting says that it finished.
        disconnect(reply, nullptr, this, nullptr);
        reply->abort();
        // May be in the middle of telling us something.
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

void HttpExchange::connecting()
{
    // The library sends a request again when the connection is lost before the answer begins, up to three times. A
    // server that cuts it may well have done what it was asked.
    if (++m_connections > 1) {
        fail(TransportError::Kind::cutOff);
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
