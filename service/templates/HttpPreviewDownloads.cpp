#include "service/templates/HttpPreviewDownloads.h"

#include "service/http/HttpClient.h"
#include "service/templates/PreviewDecoder.h"

#include <utility>

namespace lumenfold {
namespace {

/// Whoever looks at the picker has long looked elsewhere.
constexpr std::chrono::seconds patience{30};

} // namespace

HttpPreviewDownloads::HttpPreviewDownloads(HttpClient &client) : m_client(client) {}

QCoro::Task<std::optional<QByteArray>> HttpPreviewDownloads::download(QUrl address, QObject *owner)
{
    std::optional<QByteArray> bytes;
    HttpRequest request{.address = std::move(address)};
    request.timeOut = patience;
    request.maximumAnswerBytes = maximumPreviewBytes;
    try {
        HttpAnswer answer = co_await m_client.send(request, owner);
        if (answer.status >= 200 && answer.status <= 299) {
            bytes = std::move(answer.body);
        }
    } catch (const TransportError &) {
        // A template without a picture is nothing that the log need tell.
    }
    co_return bytes;
}

} // namespace lumenfold
