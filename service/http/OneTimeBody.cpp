#include "service/http/OneTimeBody.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace lumenfold {

OneTimeBody::OneTimeBody(QByteArray bytes) : m_bytes(std::move(bytes))
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

bool OneTimeBody::seek(qint64 position)
{
    return position == m_read && QIODevice::seek(position);
}

qint64 OneTimeBody::readData(char *data, qint64 maximumSize)
{
    const qint64 size = std::min(maximumSize, m_bytes.size() - m_read);
    if (size == 0) {
        return -1;
    }
    std::memcpy(data, m_bytes.constData() + m_read, static_cast<std::size_t>(size));
    m_read += size;
    return size;
}

qint64 OneTimeBody::writeData(const char *, qint64)
{
    return -1;
}

} // namespace lumenfold
