#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QUrl>

#include <optional>

class QObject;

namespace lumenfold {

/// Where the pictures of templates come from. Main thread.
class PreviewDownloads {
public:
    PreviewDownloads() = default;
    PreviewDownloads(const PreviewDownloads &) = delete;
    PreviewDownloads &operator=(const PreviewDownloads &) = delete;
    virtual ~PreviewDownloads() = default;

    /// Everything that is at the address; nothing when that fails, for whatever reason. When `owner` is destroyed the
    /// download ends, with nothing, in a later turn of the event loop.
    [[nodiscard]] virtual QCoro::Task<std::optional<QByteArray>> download(QUrl address, QObject *owner) = 0;
};

} // namespace lumenfold
