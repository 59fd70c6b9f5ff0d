#include "cards/CardPersistence.h"

#include "cards/CardFileNames.h"

#include <QMutex>
#include <QMutexLocker>
#include <QSet>
#include <QThreadPool>

#include <atomic>
#include <utility>

namespace lumenfold {
namespace {

/// Long enough for what the user does to cards one after the other to share a thread.
constexpr std::chrono::milliseconds idleThreadLife{500};

/// What these writes mean for a file: the image to save, a null image when there will be none, nothing when they leave
/// it alone.
std::optional<Image> fateOf(const QString &name, const CardWrites &writes)
{
    return writes.removes(name) ? std::optional(Image()) : writes.imageToSave(name);
}

} // namespace

/// What is to be done and what is being done, shared by the main thread and the one that does it.
class CardPersistence::Worker : public std::enable_shared_from_this<Worker> {
public:
    explicit Worker(const CardFolder &folder) : m_folder(folder), m_pool(std::make_unique<QThreadPool>())
    {
        m_pool->setObjectName(QStringLiteral("CardPersistence"));
        // One thread, so everything happens in the order in which it was asked for.
        m_pool->setMaxThreadCount(1);
        m_pool->setExpiryTimeout(static_cast<int>(idleThreadLife.count()));
    }

    void add(const CardWrites &writes)
    {
        change([&] { m_waiting.append(writes); });
    }

    /// Any thread.
    void keepThumbnail(const QString &name, const Image &image)
    {
        change([&] { m_waiting.keepThumbnail(name, image); });
    }

    /// Any thread.
    [[nodiscard]] QImage thumbnail(const QString &name, const Image &image) const
    {
        return m_folder.thumbnail(name, image);
    }

    bool wait(std::chrono::milliseconds standstill)
    {
        while (true) {
            const int before = m_progress;
            if (m_pool->waitForDone(static_cast<int>(standstill.count()))) {
                return true;
            }
            if (m_progress == before) {
                return false;
            }
        }
    }

    /// For a thread that hangs and cannot be waited for; the process ends without it.
    void abandonThread() { (void)m_pool.release(); }

    /// From now on nothing more is taken: pictures may still be made on other threads.
    void close()
    {
        const QMutexLocker lock(&m_mutex);
        m_isClosed = true;
    }

    [[nodiscard]] std::optional<Image> pendingImage(const QString &name) const
    {
        const QMutexLocker lock(&m_mutex);
        const auto waiting = fateOf(name, m_waiting);
        return waiting || !m_active ? waiting : fateOf(name, *m_active);
    }

    [[nodiscard]] std::optional<std::vector<PersistedCard>> pendingManifest() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_waiting.manifest() || !m_active ? m_waiting.manifest() : m_active->manifest();
    }

private:
    template <typename Change>
    void change(Change make)
    {
        const QMutexLocker lock(&m_mutex);
        if (!m_isClosed) {
            make();
            m_pool->start([self = shared_from_this()] { self->work(); });
        }
    }

    void work()
    {
        std::shared_ptr<const CardWrites> active;
        {
            const QMutexLocker lock(&m_mutex);
            active = m_active = std::make_shared<CardWrites>(std::exchange(m_waiting, {}));
        }
        const std::optional<QByteArray> unwrittenManifest = m_folder.apply(*active, [this] { ++m_progress; });
        {
            const QMutexLocker lock(&m_mutex);
            m_active.reset();
        }
        active.reset();
        if (unwrittenManifest) {
            (void)m_folder.writeManifest(*unwrittenManifest);
        }
    }

    const CardFolder m_folder;
    mutable QMutex m_mutex;
    bool m_isClosed = false;
    CardWrites m_waiting;
    std::shared_ptr<const CardWrites> m_active;
    std::atomic<int> m_progress = 0;
    std::unique_ptr<QThreadPool> m_pool;
};

/// The thumbnails of one image, which may outlive the store.
class CardPersistence::Thumbnails : public ThumbnailKeeper {
public:
    Thumbnails(QString name, const std::shared_ptr<Worker> &worker) : m_name(std::move(name)), m_worker(worker) {}

    [[nodiscard]] QImage find(const Image &image) override
    {
        const std::shared_ptr<Worker> worker = m_worker.lock();
        return worker ? worker->thumbnail(m_name, image) : QImage();
    }

    void thumbnailMade(const Image &image) override
    {
        if (const std::shared_ptr<Worker> worker = m_worker.lock()) {
            worker->keepThumbnail(m_name, image);
        }
    }

private:
    const QString m_name;
    const std::weak_ptr<Worker> m_worker;
};

CardPersistence::CardPersistence(const QString &folder, const QString &thumbnailFolder)
    : m_folder(folder, thumbnailFolder), m_worker(std::make_shared<Worker>(m_folder))
{
}

CardPersistence::~CardPersistence()
{
    handOver();
    m_worker->close();
    if (!m_worker->wait(longestStandstill)) {
        m_worker->abandonThread();
    }
}

QUrl CardPersistence::directory() const
{
    m_folder.create();
    return QUrl::fromLocalFile(m_folder.path());
}

QUrl CardPersistence::imageURL(const QString &id) const
{
    return urlOf(imageFileName(id));
}

QUrl CardPersistence::editorSourceImageURL(const QString &id) const
{
    return urlOf(editorSourceImageFileName(id));
}

QUrl CardPersistence::urlOf(const std::optional<QString> &name) const
{
    m_folder.create();
    return name ? QUrl::fromLocalFile(m_folder.pathOf(*name)) : QUrl();
}

void CardPersistence::saveImage(const Image &image, const QString &id)
{
    const std::optional<QString> name = imageFileName(id);
    save(image, name);
    if (name) {
        keepThumbnails(image, *name);
        m_asked.keepThumbnail(*name, image);
    }
}

void CardPersistence::saveEditorSourceImage(const Image &image, const QString &id)
{
    save(image, editorSourceImageFileName(id));
}

void CardPersistence::save(const Image &image, const std::optional<QString> &name)
{
    if (name) {
        keepBytesOf(*name);
        m_asked.save(*name, image);
        m_stored.insert(*name, image);
        scheduleWork();
    }
}

void CardPersistence::keepThumbnails(const Image &image, const QString &name)
{
    image.keepThumbnailsWith(std::make_shared<Thumbnails>(name, m_worker));
}

std::optional<Image> CardPersistence::loadImage(const QString &id)
{
    const auto name = imageFileName(id);
    std::optional<Image> image = name ? load(*name) : std::nullopt;
    if (image) {
        keepThumbnails(*image, *name);
    }
    return image;
}

std::optional<Image> CardPersistence::loadEditorSourceImage(const QString &id)
{
    const auto name = editorSourceImageFileName(id);
    const auto itsImageName = imageFileName(id);
    if (!name || !itsImageName) {
        return std::nullopt;
    }
    const auto image = m_stored.constFind(*itsImageName);
    if (image != m_stored.constEnd() && m_folder.isSameFile(*name, *itsImageName)) {
        return *image;
    }
    return load(*name);
}

std::optional<Image> CardPersistence::load(const QString &name)
{
    std::optional<Image> pending = fateOf(name, m_asked);
    if (!pending) {
        pending = m_worker->pendingImage(name);
    }
    if (pending) {
        return pending->isNull() ? std::nullopt : pending;
    }
    const std::optional<Image> image = m_folder.image(name);
    if (image) {
        m_stored.insert(name, *image);
    }
    return image;
}

void CardPersistence::deleteImage(const QString &id)
{
    remove(imageFileName(id));
    remove(editorSourceImageFileName(id));
}

void CardPersistence::remove(const std::optional<QString> &name)
{
    if (name) {
        keepBytesOf(*name);
        m_asked.remove(*name);
        scheduleWork();
    }
}

void CardPersistence::writeManifest(const std::vector<PersistedCard> &cards)
{
    m_asked.list(cards);
    scheduleWork();
}

void CardPersistence::keepBytesOf(const QString &name)
{
    if (const Image stored = m_stored.take(name); !stored.isNull()) {
        m_asked.keepBytesOf(stored);
    }
}

std::vector<PersistedCard> CardPersistence::readManifest()
{
    std::vector<PersistedCard> cards;
    QSet<QString> ids;
    const auto pending = m_asked.manifest() ? m_asked.manifest() : m_worker->pendingManifest();
    std::vector<PersistedCard> listed = pending ? *pending : m_folder.manifest();
    for (PersistedCard &card : listed) {
        if (!ids.contains(card.id)) {
            ids.insert(card.id);
            cards.push_back(std::move(card));
        }
    }
    return cards;
}

bool CardPersistence::flush(std::chrono::milliseconds standstill)
{
    handOver();
    return m_worker->wait(standstill);
}

void CardPersistence::scheduleWork()
{
    if (std::exchange(m_isWorkScheduled, true)) {
        return;
    }
    // When the present turn of the event loop is over: a card's two images and the list belong together.
    QMetaObject::invokeMethod(
        &m_context,
        [this] {
            m_isWorkScheduled = false;
            handOver();
        },
        Qt::QueuedConnection);
}

void CardPersistence::handOver()
{
    if (!m_asked.isEmpty()) {
        m_worker->add(std::exchange(m_asked, {}));
    }
}

} // namespace lumenfold
