#pragma once

#include <QByteArray>
#include <QIODevice>

namespace lumenfold {

/// The body of a request, which goes out once. The network library sends a request again when the connection is lost
/// before the answer begins; a server that cuts it may well have done what it was asked. So this cannot be read from
/// the beginning again once a byte has been read.
class OneTimeBody : public QIODevice {
public:
    explicit OneTimeBody(QByteArray bytes);

    [[nodiscard]] qint64 size() const override { return m_bytes.size(); }
    [[nodiscard]] bool seek(qint64 position) override;

protected:
    qint64 readData(char *data, qint64 maximumSize) override;
    qint64 writeData(const char *data, qint64 size) override;

private:
    const QByteArray m_bytes;
    qint64 m_read = 0;
};

} // namespace lumenfold
