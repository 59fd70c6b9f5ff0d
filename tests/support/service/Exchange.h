#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

#include <chrono>
#include <optional>
#include <utility>

/// What the double of the service hears and says, as values.
namespace lumenfold::test {

using Headers = QList<std::pair<QByteArray, QByteArray>>;

/// A request as it came over the wire.
struct ReceivedRequest {
    QByteArray method;
    /// Path and query, as they were sent.
    QByteArray target;
    /// Values without the blank after the colon, else to the byte.
    Headers headers;
    QByteArray body;

    [[nodiscard]] QByteArray path() const { return target.split('?').first(); }
    [[nodiscard]] QByteArray query() const;
    /// The value of the first header of that name.
    [[nodiscard]] std::optional<QByteArray> header(QByteArrayView name) const;
};

struct ServiceReply {
    int status = 200;
    Headers headers{};
    QByteArray body{};
    /// So many blanks follow the body, which need no memory here.
    qint64 padding = 0;
};

/// What the double does instead of answering as the service would.
struct Behaviour {
    enum class Way {
        /// Answers, after `pause`.
        answer,
        /// Takes the request and says nothing.
        silence,
        /// Reads the head of the request and then no more, and says nothing.
        stopReading,
        /// Closes the connection when the head is there.
        cut,
        /// Closes the connection in the middle of the answer's body.
        cutHalfway,
        /// Sends the answer byte by byte, `pause` between two.
        drip,
        /// Sends what is not HTTP.
        nonsense,
    };

    Way way = Way::answer;
    /// Nothing: what the service would answer.
    std::optional<ServiceReply> reply{};
    std::chrono::milliseconds pause{0};
};

[[nodiscard]] Behaviour answering(int status, const QByteArray &body = {});
[[nodiscard]] Behaviour redirectingTo(const QByteArray &address, int status = 302);

} // namespace lumenfold::test
