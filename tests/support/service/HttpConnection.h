#pragma once

#include "tests/support/service/Exchange.h"

#include <QObject>
#include <QTcpSocket>
#include <QTimer>

#include <functional>

namespace lumenfold::test {

/// One connection of a client: reads its requests, one after the other, and answers each as it is told. Only what
/// clients of this protocol send: bodies have a "Content-Length".
///
/// Its own HTTP rather than a library's, because it has to break the rules: a library's server does not stop in the
/// middle of a word.
class HttpConnection : public QObject {
public:
    struct Handler {
        /// The head of a request is there.
        std::function<Behaviour(const ReceivedRequest &)> begun;
        /// So many more bytes of the body have come.
        std::function<void(const ReceivedRequest &, qsizetype)> received;
        /// All of it is there; what an honest service answers.
        std::function<ServiceReply(const ReceivedRequest &)> completed;
    };

    /// Owns the socket. Deletes itself when the connection ends.
    HttpConnection(QTcpSocket *socket, Handler handler);

private:
    void read();
    [[nodiscard]] bool readHead();
    [[nodiscard]] bool readBody();
    void answer(const ServiceReply &reply);
    void write(const QByteArray &head, const ServiceReply &reply);
    void writePadding();
    void drip();

    QTcpSocket *m_socket;
    const Handler m_handler;
    QByteArray m_incoming;
    ReceivedRequest m_request;
    Behaviour m_behaviour;
    bool m_inBody = false;
    qsizetype m_bodyLeft = 0;
    QByteArray m_dripping;
    qint64 m_padding = 0;
    QTimer m_timer;
};

} // namespace lumenfold::test
