#pragma once

#include "service/http/HttpExchange.h"

#include <deque>
#include <map>
#include <memory>

namespace lumenfold {

/// The exchanges that go on, on a thread of their own. Not more of them at once to one server than it is decent to
/// open connections to; the others wait for their turn, and so does their time-out.
class HttpThread : public QObject {
public:
    using Number = quint64;

    struct Options {
        QByteArray authoritiesPem{};
        /// How long connections are kept for another request when nothing goes on.
        std::chrono::milliseconds keepConnections{};
    };

    /// May be made on another thread and moved. `onEnded` says on this object's thread which exchange ended, and how.
    HttpThread(Options options, std::function<void(Number, const HttpOutcome &)> onEnded);
    ~HttpThread() override;

    void begin(Number number, const HttpRequest &request);
    /// Nothing more is heard of it.
    void cancel(Number number);

private:
    struct Waiting {
        Number number;
        HttpRequest request;
    };

    struct Network;

    void beginThoseWhoseTurnItIs();
    void restIfNothingGoesOn();
    [[nodiscard]] bool isServerBusy(const QUrl &address) const;

    const std::function<void(Number, const HttpOutcome &)> m_onEnded;
    const Options m_options;
    std::unique_ptr<Network> m_network;
    std::deque<Waiting> m_waiting;
    std::map<Number, std::unique_ptr<HttpExchange>> m_running;
    /// Moves with this object because it is a child.
    QTimer m_rest{this};
};

} // namespace lumenfold
