#include "service/http/HttpMessage.h"

#include <algorithm>

namespace lumenfold {

std::optional<QByteArray> headerNamed(QByteArrayView name, const std::vector<HttpHeader> &headers)
{
    const auto found = std::ranges::find_if(
        headers, [name](const HttpHeader &header) { return header.name.compare(name, Qt::CaseInsensitive) == 0; });
    return found == headers.end() ? std::nullopt : std::optional(found->value);
}

bool isHeaderValue(QByteArrayView bytes)
{
    // Of the control characters only the tab may stand there. Bytes beyond ASCII may, whatever they mean.
    return std::ranges::none_of(bytes, [](char byte) {
        const auto code = static_cast<unsigned char>(byte);
        return (code < 0x20 && byte != '\t') || code == 0x7f;
    });
}

} // namespace lumenfold
