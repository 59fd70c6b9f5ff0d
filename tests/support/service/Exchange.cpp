#include "tests/support/service/Exchange.h"

#include <algorithm>

namespace lumenfold::test {

QByteArray ReceivedRequest::query() const
{
    const auto mark = target.indexOf('?');
    return mark < 0 ? QByteArray() : target.mid(mark + 1);
}

std::optional<QByteArray> ReceivedRequest::header(QByteArrayView name) const
{
    const auto found = std::ranges::find_if(
        headers, [name](const auto &header) { return header.first.compare(name, Qt::CaseInsensitive) == 0; });
    return found == headers.end() ? std::nullopt : std::optional(found->second);
}

Behaviour answering(int status, const QByteArray &body)
{
    return {.reply = ServiceReply{.status = status, .body = body}};
}

Behaviour redirectingTo(const QByteArray &address, int status)
{
    return {.reply = ServiceReply{.status = status, .headers = {{"Location", address}}}};
}

} // namespace lumenfold::test
