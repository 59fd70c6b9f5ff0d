#pragma once

#include "platform/geometry/Geometry.h"
#include "service/templates/PreviewCache.h"
#include "service/templates/PreviewKey.h"

#include <QCache>
#include <QCoroTask>
#include <QImage>
#include <QObject>
#include <QSet>

#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace lumenfold {

class PreviewDownloads;

/// The pictures of the templates that are in sight. They come from memory, from the disk or from their servers, are
/// read and scaled on a pool, and whatever nobody wants to see any more is given up. Main thread.
class TemplatePreviews : public QObject {
    Q_OBJECT

public:
    /// `downloads` must outlive this object and every download. Nothing is kept on disk without a cache.
    TemplatePreviews(PreviewDownloads &downloads, std::optional<PreviewCache> cache);
    ~TemplatePreviews() override;

    /// The pictures that are wanted from now on, the most urgent first, and the size in pixels that each is scaled down
    /// into. What was wanted before and is not any more is cancelled.
    void want(const std::vector<PreviewKey> &keys, PixelSize bounds);

    /// Null while there is none. One that was made for other bounds is better than none.
    [[nodiscard]] QImage picture(const PreviewKey &key) const;

    /// What could not be had is tried again when it is wanted the next time.
    void forgetFailures();

    /// Pictures that are being fetched or read.
    [[nodiscard]] std::size_t loads() const { return m_loads.size(); }

    /// At once.
    static constexpr std::size_t maximumLoads = 4;

Q_SIGNALS:
    void arrived(const lumenfold::PreviewKey &key);

private:
    struct Load;
    struct Kept {
        QImage picture;
        PixelSize bounds;
    };

    void loadMore();
    [[nodiscard]] bool isSettled(const PreviewKey &key) const;
    QCoro::Task<> load(PreviewKey key);
    void finish(const PreviewKey &key, const QImage &picture);

    PreviewDownloads &m_downloads;
    const std::optional<PreviewCache> m_cache;
    std::vector<PreviewKey> m_wanted;
    PixelSize m_bounds;
    /// A load that is taken out of here is cancelled.
    std::map<PreviewKey, std::unique_ptr<Load>> m_loads;
    QCache<PreviewKey, Kept> m_kept;
    /// Of the present wish; memory need not have room for all of it.
    QSet<PreviewKey> m_shown;
    QSet<PreviewKey> m_failed;
};

} // namespace lumenfold
