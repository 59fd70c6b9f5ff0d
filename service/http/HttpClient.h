#pragma once

#include "service/http/HttpMessage.h"
#include "service/http/TransportError.h"

#include <tl/expected.hpp>

#include <QCoroTask>
#include <QObject>

#include <map>
#include <memory>

class QThread;

namespace lumenfold {

class HttpThread;

/// Speaks HTTP and HTTPS with servers. Main thread.
///
/// The work goes on on a thread of its own, because the first use of the library alone (its encryption, the machine's
/// certificates, the search for a proxy) keeps a thread busy for tens of milliseconds. The thread begins with the first
/// request: a program without an account has none.
///
/// Certificates are always checked. No cookies, no cache, no body is sent twice. What redirects do: Redirects.h.
class HttpClient {
public:
    struct Options {
        /// Certificate authorities to trust beside those of the machine, in PEM.
        QByteArray additionalAuthorities{};
        /// How long connections are kept for another request when nothing goes on: over the steps of an upload and the
        /// pictures of a list, no longer.
        std::chrono::milliseconds keepConnections = std::chrono::seconds{10};
    };

    HttpClient();
    explicit HttpClient(const Options &options);
    HttpClient(const HttpClient &) = delete;
    HttpClient &operator=(const HttpClient &) = delete;
    /// Every request that goes on ends as `cancelled`, in here.
    ~HttpClient();

    /// The answer, whatever its status; throws TransportError when there is none. When `owner` is destroyed the request
    /// ends as `cancelled`, in a later turn of the event loop.
    [[nodiscard]] QCoro::Task<HttpAnswer> send(HttpRequest request, QObject *owner = nullptr);

private:
    struct Waiting;
    struct Ending;

    [[nodiscard]] std::shared_ptr<Waiting> begin(const HttpRequest &request, QObject *owner);
    [[nodiscard]] HttpThread &thread();
    void finish(quint64 number, tl::expected<HttpAnswer, TransportError> outcome);
    void cancel(quint64 number);

    const Options m_options;
    std::unique_ptr<QThread> m_thread;
    /// Lives on the thread and is deleted there when that ends.
    HttpThread *m_onThread = nullptr;
    std::map<quint64, std::shared_ptr<Waiting>> m_waiting;
    quint64 m_last = 0;
    bool m_closing = false;
    /// What the thread sends its news to.
    QObject m_here;
};

} // namespace lumenfold
