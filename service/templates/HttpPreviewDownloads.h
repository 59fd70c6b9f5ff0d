#pragma once

#include "service/templates/PreviewDownloads.h"

namespace lumenfold {

class HttpClient;

/// Downloads over HTTP and HTTPS, with no header at all: the pictures may be anywhere, and the API key is nobody's
/// business but the service's.
class HttpPreviewDownloads : public PreviewDownloads {
public:
    /// `client` must outlive this object and every download.
    explicit HttpPreviewDownloads(HttpClient &client);

    [[nodiscard]] QCoro::Task<std::optional<QByteArray>> download(QUrl address, QObject *owner) override;

private:
    HttpClient &m_client;
};

} // namespace lumenfold
