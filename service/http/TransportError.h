#pragma once

#include <QByteArray>

#include <exception>

namespace lumenfold {

/// Why a request got no answer. The text is for the log; it names neither the address nor any header, because both may
/// hold secrets.
class TransportError : public std::exception {
public:
    enum class Kind {
        /// Nobody waits for the answer any more, or the program ends. Not a failure.
        cancelled,
        /// Nothing was sent: not an address of a server, or a header that cannot be one.
        refused,
        /// No such host, no way to it, or nobody there.
        unreachable,
        /// The certificate is not to be trusted, or no secure connection came about.
        untrusted,
        /// The connection ended before the whole answer was there; also when what came is not HTTP.
        cutOff,
        timedOut,
        tooLarge,
        tooManyRedirects,
        other,
    };

    /// `code`: what the network library calls it, for the log; 0 when it has no say in it.
    explicit TransportError(Kind kind, int code = 0);

    [[nodiscard]] Kind kind() const noexcept { return m_kind; }
    [[nodiscard]] const char *what() const noexcept override { return m_text.constData(); }

private:
    Kind m_kind;
    QByteArray m_text;
};

} // namespace lumenfold
