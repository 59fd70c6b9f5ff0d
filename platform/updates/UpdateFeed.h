#pragma once

#include "platform/updates/UpdateSearch.h"

#include <QCoroTask>

class QObject;

namespace lumenfold {

/// Where the feed with the versions is. Who brings it over the network is not the updater's business.
class UpdateFeed {
public:
    UpdateFeed() = default;
    UpdateFeed(const UpdateFeed &) = delete;
    UpdateFeed &operator=(const UpdateFeed &) = delete;
    virtual ~UpdateFeed() = default;

    /// The bytes that are there now, at most `maximumBytes` of them: more is a failure. Once `owner` is gone the
    /// request may end as it likes.
    [[nodiscard]] virtual QCoro::Task<tl::expected<QByteArray, UpdateCheckError>> fetch(qint64 maximumBytes,
                                                                                        QObject *owner) = 0;
};

} // namespace lumenfold
