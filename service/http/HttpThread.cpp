#include "service/http/HttpThread.h"

#include "service/http/Redirects.h"

#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QSslCertificate>

#include <algorithm>
#include <utility>

namespace lumenfold {
namespace {

/// As many as the library opens for one server.
constexpr int mostExchangesWithOneServer = 6;

/// What the desktop or the environment says of proxies, except for servers on this machine. May look for a proxy on the
/// network.
class SystemProxies : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override
    {
        const QString host = query.peerHostName();
        if (host == QStringView(u"localhost") || QHostAddress(host).isLoopback()) {
            return {QNetworkProxy(QNetworkProxy::NoProxy)};
        }
        return systemProxyForQuery(query);
    }
};

QSslConfiguration trusting(const QByteArray &authoritiesPem)
{
    QSslConfiguration security = QSslConfiguration::defaultConfiguration();
    if (!authoritiesPem.isEmpty()) {
        security.addCaCertificates(QSslCertificate::fromData(authoritiesPem, QSsl::Pem));
    }
    return security;
}

} // namespace

/// Made with the first request, on the thread that it is for.
struct HttpThread::Network {
    explicit Network(const QByteArray &authoritiesPem) : security(trusting(authoritiesPem))
    {
        manager.setProxyFactory(new SystemProxies);
    }

    QSslConfiguration security;
    QNetworkAccessManager manager;
};

HttpThread::HttpThread(Options options, std::function<void(Number, const HttpOutcome &)> onEnded)
    : m_onEnded(std::move(onEnded)), m_options(std::move(options))
{
    // A connection that has been idle for long, through a sleep of the machine perhaps, is often dead without knowing
    // it, and what is sent over it is lost. And a program at rest has no connections.
    m_rest.setSingleShot(true);
    m_rest.setInterval(m_options.keepConnections);
    m_rest.callOnTimeout(this, [this] { m_network->manager.clearConnectionCache(); });
}

HttpThread::~HttpThread() = default;

void HttpThread::begin(Number number, const HttpRequest &request)
{
    if (!m_network) {
        m_network = std::make_unique<Network>(m_options.authoritiesPem);
    }
    m_rest.stop();
    m_waiting.push_back({number, request});
    beginThoseWhoseTurnItIs();
}

void HttpThread::cancel(Number number)
{
    std::erase_if(m_waiting, [number](const Waiting &waiting) { return waiting.number == number; });
    m_running.erase(number);
    beginThoseWhoseTurnItIs();
    restIfNothingGoesOn();
}

void HttpThread::restIfNothingGoesOn()
{
    if (m_running.empty()) {
        m_rest.start();
    }
}

bool HttpThread::isServerBusy(const QUrl &address) const
{
    return std::ranges::count_if(m_running, [&address](const auto &entry) {
               return isSameOrigin(entry.second->address(), address);
           }) >= mostExchangesWithOneServer;
}

void HttpThread::beginThoseWhoseTurnItIs()
{
    for (auto next = m_waiting.begin(); next != m_waiting.end();) {
        if (isServerBusy(next->request.address)) {
            ++next;
            continue;
        }
        const Number number = next->number;
        auto exchange = std::make_unique<HttpExchange>(m_network->manager, std::move(next->request));
        next = m_waiting.erase(next);
        exchange->onEnded = [this, number](const HttpOutcome &outcome) {
            // It is in the middle of telling this.
            m_running.extract(number).mapped().release()->deleteLater();
            m_onEnded(number, outcome);
            beginThoseWhoseTurnItIs();
            restIfNothingGoesOn();
        };
        m_running.emplace(number, std::move(exchange)).first->second->begin(m_network->security);
    }
}

} // namespace lumenfold
