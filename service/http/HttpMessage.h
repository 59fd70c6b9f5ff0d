#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QUrl>

#include <chrono>
#include <optional>
#include <vector>

/// What goes to a server and what comes back, as plain values.
namespace lumenfold {

enum class HttpMethod { get, post, put };

struct HttpHeader {
    QByteArray name;
    QByteArray value;

    friend bool operator==(const HttpHeader &, const HttpHeader &) = default;
};

/// The value of the first header of that name, in whatever letters the name is written.
[[nodiscard]] std::optional<QByteArray> headerNamed(QByteArrayView name, const std::vector<HttpHeader> &headers);

/// Whether bytes can stand in a header as they are: a line break would begin a header of its own.
[[nodiscard]] bool isHeaderValue(QByteArrayView bytes);

struct HttpRequest {
    /// "http" or "https" with a host; anything else is refused.
    QUrl address;
    HttpMethod method = HttpMethod::get;
    std::vector<HttpHeader> headers{};
    /// Shared, not copied.
    QByteArray body{};
    /// How long sending may stand still, and how long the whole answer may take once the request is out. So a slow line
    /// may take its time with a large picture, and a server that sends a byte a second holds nobody for longer.
    std::chrono::milliseconds timeOut = std::chrono::seconds{60};
    /// A larger answer is a failure. The default is far beyond every honest answer of the service.
    qint64 maximumAnswerBytes = qint64{4} * 1024 * 1024;
};

/// Whatever its status is.
struct HttpAnswer {
    int status = 0;
    std::vector<HttpHeader> headers{};
    /// As it was before the server compressed it.
    QByteArray body{};
};

} // namespace lumenfold
