#pragma once

#include "platform/updates/UpdateFeed.h"

#include <QUrl>

namespace lumenfold {

class HttpClient;

/// The feed on a server. The request tells nothing about the user or the program.
class HttpUpdateFeed : public UpdateFeed {
public:
    /// `client` must outlive this object and every request.
    HttpUpdateFeed(HttpClient &client, QUrl address);

    [[nodiscard]] QCoro::Task<tl::expected<QByteArray, UpdateCheckError>> fetch(qint64 maximumBytes,
                                                                                QObject *owner) override;

private:
    HttpClient &m_client;
    const QUrl m_address;
};

} // namespace lumenfold
