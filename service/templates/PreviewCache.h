#pragma once

#include "service/templates/PreviewKey.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <chrono>
#include <optional>

namespace lumenfold {

/// The pictures of templates as they were downloaded, in a folder that anybody may empty at any time. Any thread, also
/// several at once and several programs; waits for the disk only. Whatever fails is as if the picture were not there.
class PreviewCache {
public:
    struct Limits {
        int count = 400;
        qint64 bytes = qint64{32} * 1024 * 1024;
        /// A picture that is older is not shown any more: a template need not say when it was edited.
        std::chrono::seconds age = std::chrono::days{7};
    };

    /// Where the cache is, below the folder of caches.
    static const QString relativePath;

    /// `folder` is made when there is something to put into it.
    explicit PreviewCache(QString folder);
    PreviewCache(QString folder, const Limits &limits);

    [[nodiscard]] std::optional<QByteArray> find(const PreviewKey &key) const;
    /// Then removes the oldest pictures until what is left keeps within the limits.
    void store(const PreviewKey &key, QByteArrayView bytes) const;
    void remove(const PreviewKey &key) const;

private:
    [[nodiscard]] QString pathOf(const PreviewKey &key) const;
    void trim() const;

    QString m_folder;
    Limits m_limits;
};

} // namespace lumenfold
