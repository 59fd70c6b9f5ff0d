#include "tests/support/service/HttpConnection.h"

#include <algorithm>
#include <utility>

namespace lumenfold::test {
namespace {

constexpr QByteArrayView endOfLine = "\r\n";
constexpr QByteArrayView endOfHead = "\r\n\r\n";

ReceivedRequest parseHead(const QByteArray &head)
{
    ReceivedRequest request;
    qsizetype from = 0;
    while (from < head.size()) {
        qsizetype to = head.indexOf(endOfLine, from);
        to = to < 0 ? head.size() : to;
        const QByteArray line = head.mid(from, to - from);
        from = to + endOfLine.size();
        if (request.method.isEmpty()) {
            const QList<QByteArray> words = line.split(' ');
            request.method = words.value(0);
            request.target = words.value(1);
        } else {
            const auto colon = line.indexOf(':');
            QByteArray value = line.mid(colon + 1);
            request.headers.append({line.left(colon), value.startsWith(' ') ? value.mid(1) : value});
        }
    }
    return request;
}

QByteArray headOf(const ServiceReply &reply)
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(reply.status) + " Status\r\n";
    for (const auto &[name, value] : reply.headers) {
        head += name + ": " + value + "\r\n";
    }
    return head + "Content-Length: " + QByteArray::number(reply.body.size() + reply.padding) + "\r\n\r\n";
}

} // namespace

HttpConnection::HttpConnection(QTcpSocket *socket, Handler handler) : m_socket(socket), m_handler(std::move(handler))
{
    socket->setParent(this);
    m_timer.setSingleShot(true);
    connect(socket, &QTcpSocket::readyRead, this, [this] { read(); });
    connect(socket, &QTcpSocket::bytesWritten, this, [this] { writePadding(); });
    connect(socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    read();
}

void HttpConnection::read()
{
    m_incoming += m_socket->readAll();
    while (m_inBody ? readBody() : readHead()) {
    }
}

bool HttpConnection::readHead()
{
    const auto end = m_incoming.indexOf(endOfHead);
    if (end < 0) {
        return false;
    }
    m_request = parseHead(m_incoming.left(end));
    m_incoming.remove(0, end + endOfHead.size());
    m_bodyLeft = m_request.header("Content-Length").value_or("0").toLongLong();
    m_behaviour = m_handler.begun(m_request);
    if (m_behaviour.way == Behaviour::Way::cut) {
        m_socket->disconnectFromHost();
        return false;
    }
    if (m_behaviour.way == Behaviour::Way::stopReading) {
        m_socket->setReadBufferSize(1);
        m_socket->disconnect(this);
        connect(m_socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
        return false;
    }
    m_inBody = true;
    return true;
}

bool HttpConnection::readBody()
{
    const QByteArray piece = m_incoming.left(m_bodyLeft);
    m_incoming.remove(0, piece.size());
    m_bodyLeft -= piece.size();
    m_request.body += piece;
    if (!piece.isEmpty()) {
        m_handler.received(m_request, piece.size());
    }
    if (m_bodyLeft > 0) {
        return false;
    }
    m_inBody = false;
    const ServiceReply honest = m_handler.completed(m_request);
    answer(m_behaviour.reply.value_or(honest));
    return !m_incoming.isEmpty();
}

void HttpConnection::answer(const ServiceReply &reply)
{
    const QByteArray head = headOf(reply);
    switch (m_behaviour.way) {
    case Behaviour::Way::answer:
        m_timer.callOnTimeout(this, [this, head, reply] {
            m_timer.disconnect();
            write(head, reply);
        });
        m_timer.start(m_behaviour.pause);
        break;
    case Behaviour::Way::cutHalfway:
        m_socket->write(head + reply.body.left(reply.body.size() / 2));
        m_socket->disconnectFromHost();
        break;
    case Behaviour::Way::drip:
        m_dripping = head + reply.body;
        m_timer.callOnTimeout(this, [this] { drip(); });
        drip();
        break;
    case Behaviour::Way::nonsense:
        m_socket->write("SSH-2.0-Nonsense\r\n\r\n");
        break;
    case Behaviour::Way::silence:
    case Behaviour::Way::stopReading:
    case Behaviour::Way::cut:
        break;
    }
}

void HttpConnection::write(const QByteArray &head, const ServiceReply &reply)
{
    m_socket->write(head + reply.body);
    m_padding = reply.padding;
    writePadding();
}

void HttpConnection::writePadding()
{
    constexpr qint64 pieceBytes = qint64{256} * 1024;
    if (m_padding > 0 && m_socket->bytesToWrite() < pieceBytes) {
        const qint64 now = std::min(m_padding, pieceBytes);
        m_padding -= now;
        m_socket->write(QByteArray(now, ' '));
    }
}

void HttpConnection::drip()
{
    m_socket->write(m_dripping.left(1));
    m_dripping.remove(0, 1);
    if (m_dripping.isEmpty()) {
        m_timer.disconnect();
    } else {
        m_timer.start(m_behaviour.pause);
    }
}

} // namespace lumenfold::test
