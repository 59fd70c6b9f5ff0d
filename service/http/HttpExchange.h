#pragma once

#include "service/http/HttpMessage.h"
#include "service/http/TransportError.h"

#include <tl/expected.hpp>

#include <QObject>
#include <QSslConfiguration>
#include <QTimer>

#include <functional>

class QNetworkAccessManager;
class QNetworkReply;

namespace lumenfold {

using HttpOutcome = tl::expected<HttpAnswer, TransportError>;

/// One request until its final answer: redirects, limits and the time-out. Lives on the thread of its manager.
class HttpExchange : public QObject {
public:
    /// `manager` must outlive the exchange.
    HttpExchange(QNetworkAccessManager &manager, HttpRequest request);
    ~HttpExchange() override;

    /// How it ended; called once, at most, in a later turn of the event loop. The exchange may be deleted in it.
    std::function<void(HttpOutcome)> onEnded;

    /// `security`: which certificates are trusted. The time-out begins now.
    void begin(const QSslConfiguration &security);

    [[nodiscard]] const QUrl &address() const { return m_request.address; }

private:
    void send();
    void dropReply();
    void readWhatIsThere();
    void replyFinished();
    void sentSoFar(qint64 bytes);
    void end(const HttpOutcome &outcome);
    void fail(TransportError::Kind kind, int code = 0);

    QNetworkAccessManager &m_manager;
    HttpRequest m_request;
    QSslConfiguration m_security;
    QNetworkReply *m_reply = nullptr;
    QByteArray m_body;
    QTimer m_patience;
    qint64 m_sent = 0;
    int m_redirects = 0;
};

} // namespace lumenfold
