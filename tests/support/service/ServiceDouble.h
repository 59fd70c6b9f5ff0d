#pragma once

#include "tests/support/service/ServiceProtocol.h"

#include <QList>
#include <QThread>

#include <functional>
#include <map>
#include <memory>
#include <mutex>

namespace lumenfold::test {

/// A certificate and its key, in PEM.
struct ServerIdentity {
    QByteArray certificate;
    QByteArray key;
};

/// The online service, on this machine: speaks the whole protocol over real connections, remembers what it was asked,
/// and misbehaves as it is told. Works on a thread of its own; its members may be called from any.
class ServiceDouble {
public:
    using Endpoint = ServiceProtocol::Endpoint;

    struct Options {
        /// With one it speaks HTTPS, else HTTP.
        std::optional<ServerIdentity> identity{};
        /// 0: any that is free.
        quint16 port = 0;
        /// Forget the bodies of requests, for whoever measures memory.
        bool forgetBodies = false;
    };

    /// Listens on the loopback interface when this returns. Throws std::runtime_error when it cannot.
    ServiceDouble();
    explicit ServiceDouble(const Options &options);
    ServiceDouble(const ServiceDouble &) = delete;
    ServiceDouble &operator=(const ServiceDouble &) = delete;
    ~ServiceDouble();

    /// Without a slash at the end.
    [[nodiscard]] QUrl baseURL() const { return QUrl(QString::fromLatin1(m_base)); }
    [[nodiscard]] QUrl url(const QString &path) const { return QUrl(QString::fromLatin1(m_base) + path); }

    /// From now on; the next `times` requests, or all that follow.
    void behave(Endpoint endpoint, const Behaviour &behaviour, int times = -1);
    void behaveWell();

    /// What the honest service has; changes it between two requests.
    void change(const std::function<void(ServiceProtocol &)> &how);
    /// A picture as it was uploaded; empty when there is none.
    [[nodiscard]] QByteArray stored(const QByteArray &path) const;

    /// Complete requests, oldest first.
    [[nodiscard]] QList<ReceivedRequest> requests(Endpoint endpoint) const;
    [[nodiscard]] QList<ReceivedRequest> requests() const;
    /// Requests of which the head has come, and bytes of all bodies so far.
    [[nodiscard]] int begun(Endpoint endpoint) const;
    [[nodiscard]] qint64 receivedBytes(Endpoint endpoint) const;
    /// Connections that are open now.
    [[nodiscard]] int openConnections() const;

private:
    struct Plan {
        Behaviour behaviour;
        int times;
    };
    class Listener;

    [[nodiscard]] Behaviour noteBegun(const ReceivedRequest &request);
    void noteReceived(const ReceivedRequest &request, qsizetype bytes);
    [[nodiscard]] ServiceReply noteCompleted(const ReceivedRequest &request);
    void noteConnections(int change);

    const Options m_options;
    mutable std::mutex m_mutex;
    ServiceProtocol m_protocol;
    std::map<Endpoint, Plan> m_plans;
    QList<ReceivedRequest> m_requests;
    std::map<Endpoint, int> m_begun;
    std::map<Endpoint, qint64> m_received;
    int m_connections = 0;
    QByteArray m_base;
    QThread m_thread;
    Listener *m_listener = nullptr;
};

} // namespace lumenfold::test
