#include "tests/support/service/ServiceDouble.h"

#include "tests/support/service/HttpConnection.h"

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>

#include <algorithm>
#include <stdexcept>

namespace lumenfold::test {
namespace {

QSslConfiguration identifyingAs(const ServerIdentity &identity)
{
    QSslConfiguration security = QSslConfiguration::defaultConfiguration();
    security.setLocalCertificateChain(QSslCertificate::fromData(identity.certificate, QSsl::Pem));
    security.setPrivateKey(QSslKey(identity.key, QSsl::Ec));
    security.setPeerVerifyMode(QSslSocket::VerifyNone);
    return security;
}

} // namespace

/// Lives on the double's thread.
class ServiceDouble::Listener : public QObject {
public:
    explicit Listener(ServiceDouble &service) : m_service(service) {}

    /// The port; throws std::runtime_error when there is none.
    quint16 listen()
    {
        const Options &options = m_service.m_options;
        if (options.identity) {
            auto server = std::make_unique<QSslServer>();
            server->setSslConfiguration(identifyingAs(*options.identity));
            m_server = std::move(server);
        } else {
            m_server = std::make_unique<QTcpServer>();
        }
        connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, this, [this] { accept(); });
        if (!m_server->listen(QHostAddress::LocalHost, options.port)) {
            throw std::runtime_error("the double of the service cannot listen: " +
                                     m_server->errorString().toStdString());
        }
        return m_server->serverPort();
    }

private:
    void accept()
    {
        while (QTcpSocket *socket = m_server->nextPendingConnection()) {
            m_service.noteConnections(1);
            auto *connection = new HttpConnection(
                socket,
                {.begun = [this](const ReceivedRequest &request) { return m_service.noteBegun(request); },
                 .received = [this](const ReceivedRequest &request,
                                    qsizetype bytes) { m_service.noteReceived(request, bytes); },
                 .completed = [this](const ReceivedRequest &request) { return m_service.noteCompleted(request); }});
            connection->setParent(this);
            connect(connection, &QObject::destroyed, this, [this] { m_service.noteConnections(-1); });
        }
    }

    ServiceDouble &m_service;
    std::unique_ptr<QTcpServer> m_server;
};

ServiceDouble::ServiceDouble() : ServiceDouble(Options{}) {}

ServiceDouble::ServiceDouble(const Options &options) : m_options(options), m_listener(new Listener(*this))
{
    m_listener->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_listener, &QObject::deleteLater);
    m_thread.setObjectName(QStringLiteral("ServiceDouble"));
    m_thread.start();
    quint16 port = 0;
    QString failure;
    QMetaObject::invokeMethod(
        m_listener,
        [this, &port, &failure] {
            try {
                port = m_listener->listen();
            } catch (const std::exception &error) {
                failure = QString::fromUtf8(error.what());
            }
        },
        Qt::BlockingQueuedConnection);
    if (port == 0) {
        m_thread.quit();
        m_thread.wait();
        throw std::runtime_error(failure.toStdString());
    }
    m_base = (options.identity ? "https" : "http") + QByteArray("://127.0.0.1:") + QByteArray::number(port);
}

ServiceDouble::~ServiceDouble()
{
    m_thread.quit();
    m_thread.wait();
}

void ServiceDouble::behave(Endpoint endpoint, const Behaviour &behaviour, int times)
{
    const std::scoped_lock lock(m_mutex);
    m_plans.insert_or_assign(endpoint, Plan{behaviour, times});
}

void ServiceDouble::behaveWell()
{
    const std::scoped_lock lock(m_mutex);
    m_plans.clear();
}

void ServiceDouble::change(const std::function<void(ServiceProtocol &)> &how)
{
    const std::scoped_lock lock(m_mutex);
    how(m_protocol);
}

QByteArray ServiceDouble::stored(const QByteArray &path) const
{
    const std::scoped_lock lock(m_mutex);
    return m_protocol.stored.value(path);
}

QList<ReceivedRequest> ServiceDouble::requests(Endpoint endpoint) const
{
    QList<ReceivedRequest> all = requests();
    all.removeIf([endpoint](const auto &request) { return ServiceProtocol::endpointOf(request) != endpoint; });
    return all;
}

QList<ReceivedRequest> ServiceDouble::requests() const
{
    const std::scoped_lock lock(m_mutex);
    return m_requests;
}

int ServiceDouble::begun(Endpoint endpoint) const
{
    const std::scoped_lock lock(m_mutex);
    const auto entry = m_begun.find(endpoint);
    return entry == m_begun.end() ? 0 : entry->second;
}

qint64 ServiceDouble::receivedBytes(Endpoint endpoint) const
{
    const std::scoped_lock lock(m_mutex);
    const auto entry = m_received.find(endpoint);
    return entry == m_received.end() ? 0 : entry->second;
}

int ServiceDouble::openConnections() const
{
    const std::scoped_lock lock(m_mutex);
    return m_connections;
}

Behaviour ServiceDouble::noteBegun(const ReceivedRequest &request)
{
    const std::scoped_lock lock(m_mutex);
    const Endpoint endpoint = ServiceProtocol::endpointOf(request);
    ++m_begun[endpoint];
    const auto plan = m_plans.find(endpoint);
    if (plan == m_plans.end()) {
        return {};
    }
    const Behaviour behaviour = plan->second.behaviour;
    if (plan->second.times > 0 && --plan->second.times == 0) {
        m_plans.erase(plan);
    }
    return behaviour;
}

void ServiceDouble::noteReceived(const ReceivedRequest &request, qsizetype bytes)
{
    const std::scoped_lock lock(m_mutex);
    m_received[ServiceProtocol::endpointOf(request)] += bytes;
}

ServiceReply ServiceDouble::noteCompleted(const ReceivedRequest &request)
{
    const std::scoped_lock lock(m_mutex);
    m_requests.append(request);
    ServiceReply reply = m_protocol.answerTo(request, m_base);
    if (m_options.forgetBodies) {
        m_requests.last().body.clear();
        m_protocol.stored.clear();
    }
    return reply;
}

void ServiceDouble::noteConnections(int change)
{
    const std::scoped_lock lock(m_mutex);
    m_connections += change;
}

} // namespace lumenfold::test
