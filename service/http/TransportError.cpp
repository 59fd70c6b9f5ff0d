#include "service/http/TransportError.h"

namespace lumenfold {
namespace {

QByteArray sentence(TransportError::Kind kind)
{
    using Kind = TransportError::Kind;
    switch (kind) {
    case Kind::cancelled:
        return "the request was called off";
    case Kind::refused:
        return "the request cannot be sent";
    case Kind::unreachable:
        return "the server cannot be reached";
    case Kind::untrusted:
        return "no trusted connection to the server";
    case Kind::cutOff:
        return "the connection ended before the answer was complete";
    case Kind::timedOut:
        return "the server took too long";
    case Kind::tooLarge:
        return "the answer is too large";
    case Kind::tooManyRedirects:
        return "the server redirects without end";
    case Kind::other:
        break;
    }
    return "the network failed";
}

} // namespace

TransportError::TransportError(Kind kind, int code) : m_kind(kind), m_text(sentence(kind))
{
    if (code != 0) {
        m_text += " (network error " + QByteArray::number(code) + ')';
    }
}

} // namespace lumenfold
