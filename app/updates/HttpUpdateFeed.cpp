#include "app/updates/HttpUpdateFeed.h"

#include "service/http/HttpClient.h"

#include <utility>

namespace lumenfold {
namespace {

constexpr std::chrono::seconds patience{30};
constexpr int statusOk = 200;

} // namespace

HttpUpdateFeed::HttpUpdateFeed(HttpClient &client, QUrl address) : m_client(client), m_address(std::move(address)) {}

QCoro::Task<tl::expected<QByteArray, UpdateCheckError>> HttpUpdateFeed::fetch(qint64 maximumBytes, QObject *owner)
{
    HttpRequest request{.address = m_address};
    request.timeOut = patience;
    request.maximumAnswerBytes = maximumBytes;
    UpdateCheckError error = UpdateCheckError::unreachable;
    try {
        HttpAnswer answer = co_await m_client.send(request, owner);
        if (answer.status == statusOk) {
            co_return std::move(answer.body);
        }
    } catch (const TransportError &failure) {
        if (failure.kind() == TransportError::Kind::untrusted) {
            error = UpdateCheckError::untrusted;
        } else if (failure.kind() == TransportError::Kind::tooLarge) {
            error = UpdateCheckError::unreadable;
        }
    }
    co_return tl::unexpected(error);
}

} // namespace lumenfold
