#include "service/templates/TemplatePreviews.h"

#include "platform/image/EncodingPool.h"
#include "service/templates/PreviewDecoder.h"
#include "service/templates/PreviewDownloads.h"

#include <QCoroFuture>
#include <QPointer>
#include <QUrl>

#include <algorithm>
#include <atomic>
#include <functional>
#include <utility>

namespace lumenfold {
namespace {

/// Some two hundred pictures as they are in the picker on a screen of scale 2.
constexpr qsizetype maximumKeptBytes = qsizetype{32} * 1024 * 1024;

using Flag = std::shared_ptr<std::atomic<bool>>;

/// What a picture is to be made of, for a thread of the pool.
struct Order {
    PreviewKey key;
    PixelSize bounds;
    std::optional<PreviewCache> cache;
    /// Nobody wants it any more.
    Flag cancelled;
};

QImage readStored(const Order &order)
{
    if (*order.cancelled) {
        return {};
    }
    const std::optional<QByteArray> bytes = order.cache->find(order.key);
    QImage picture = bytes ? decodePreview(*bytes, order.bounds) : QImage();
    if (bytes && picture.isNull()) {
        order.cache->remove(order.key);
    }
    return picture;
}

/// Keeps it also when nobody wants it any more; somebody will.
QImage readDownloaded(const Order &order, const QByteArray &bytes)
{
    QImage picture = decodePreview(bytes, order.bounds);
    if (order.cache && !picture.isNull()) {
        order.cache->store(order.key, bytes);
    }
    return picture;
}

QFuture<QImage> beginToReadStored(const Order &order)
{
    return makePicture(backgroundPool(), [order] { return readStored(order); });
}

QFuture<QImage> beginToReadDownloaded(const Order &order, const QByteArray &bytes)
{
    return makePicture(backgroundPool(), [order, bytes] { return readDownloaded(order, bytes); });
}

} // namespace

/// One picture that is being fetched or read; the owner of its download.
struct TemplatePreviews::Load : public QObject {
    explicit Load(PixelSize size) : bounds(size) {}
    ~Load() override { *cancelled = true; }

    const PixelSize bounds;
    const Flag cancelled = std::make_shared<std::atomic<bool>>(false);
};

TemplatePreviews::TemplatePreviews(PreviewDownloads &downloads, std::optional<PreviewCache> cache)
    : m_downloads(downloads), m_cache(std::move(cache)), m_kept(maximumKeptBytes)
{
}

TemplatePreviews::~TemplatePreviews() = default;

void TemplatePreviews::want(const std::vector<PreviewKey> &keys, PixelSize bounds)
{
    if (keys == m_wanted && bounds == m_bounds) {
        return;
    }
    m_wanted = keys;
    m_bounds = bounds;
    m_shown.clear();
    std::erase_if(m_loads, [&](const auto &entry) {
        return entry.second->bounds != bounds || std::ranges::find(keys, entry.first) == keys.end();
    });
    loadMore();
}

QImage TemplatePreviews::picture(const PreviewKey &key) const
{
    const Kept *kept = m_kept.object(key);
    return kept != nullptr ? kept->picture : QImage();
}

void TemplatePreviews::forgetFailures()
{
    m_failed.clear();
    m_wanted.clear();
}

bool TemplatePreviews::isSettled(const PreviewKey &key) const
{
    const Kept *kept = m_kept.object(key);
    return (kept != nullptr && kept->bounds == m_bounds) || m_shown.contains(key) || m_failed.contains(key) ||
           m_loads.contains(key);
}

void TemplatePreviews::loadMore()
{
    // A copy: a load that ends at once tells observers, which may want something else.
    const std::vector<PreviewKey> wanted = m_wanted;
    for (const PreviewKey &key : wanted) {
        if (m_loads.size() >= maximumLoads) {
            return;
        }
        if (!isSettled(key)) {
            m_loads.emplace(key, std::make_unique<Load>(m_bounds));
            load(key);
        }
    }
}

QCoro::Task<> TemplatePreviews::load(PreviewKey key)
{
    // Goes with this object, or when the picture is not wanted any more.
    const QPointer<Load> load = m_loads.at(key).get();
    const Order order{key, load->bounds, m_cache, load->cancelled};
    QImage picture;
    if (order.cache) {
        picture = co_await beginToReadStored(order);
        if (!load) {
            co_return;
        }
    }
    if (picture.isNull()) {
        const QUrl address = QUrl::fromEncoded(key.address.toLatin1());
        const std::optional<QByteArray> bytes = co_await m_downloads.download(address, load);
        if (!load) {
            co_return;
        }
        if (bytes) {
            picture = co_await beginToReadDownloaded(order, *bytes);
            if (!load) {
                co_return;
            }
        }
    }
    finish(key, picture);
}

void TemplatePreviews::finish(const PreviewKey &key, const QImage &picture)
{
    m_loads.erase(key);
    if (picture.isNull()) {
        m_failed.insert(key);
    } else {
        m_shown.insert(key);
        m_kept.insert(key, new Kept{picture, m_bounds}, picture.sizeInBytes());
        Q_EMIT arrived(key);
    }
    loadMore();
}

} // namespace lumenfold
