#include "platform/secrets/MirroredSecretStore.h"

#include "platform/secrets/SecretMirror.h"

#include <QCoroFuture>
#include <QPromise>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace lumenfold {
namespace {

using namespace std::chrono_literals;

/// For a session bus that takes a call and never answers; a keyring's own patience is shorter.
constexpr auto patienceForFirstAnswer = 15s;
/// What the end of the program grants to operations that are under way, and to threads that have been told to end.
constexpr auto graceForOperations = 1s;
constexpr auto graceForThreads = 500ms;

} // namespace

struct MirroredSecretStore::Shared {
    struct Operation {
        SecretMirror::Operation number;
        Work work;
        QPromise<int> ended;
    };

    Shared(QString serviceName, KeyringFactory keyringFactory)
        : service(std::move(serviceName)), factory(std::move(keyringFactory))
    {
        firstAnswer.start();
    }

    /// A keyring for the present thread, which `cancelAll` reaches.
    class Connection {
    public:
        explicit Connection(Shared &shared) : m_shared(shared), m_keyring(shared.factory())
        {
            const std::lock_guard lock(m_shared.mutex);
            if (m_keyring) {
                m_shared.keyrings.push_back(m_keyring.get());
                if (m_shared.owner == nullptr) {
                    m_keyring->cancel();
                }
            }
        }
        Connection(const Connection &) = delete;
        Connection &operator=(const Connection &) = delete;
        ~Connection()
        {
            const std::lock_guard lock(m_shared.mutex);
            std::erase(m_shared.keyrings, m_keyring.get());
        }

        [[nodiscard]] Keyring *get() const { return m_keyring.get(); }

    private:
        Shared &m_shared;
        std::unique_ptr<Keyring> m_keyring;
    };

    /// Reads the keyring into the mirror, unless a later reading was faster. Ends the operation with that.
    void read(Keyring *keyring, std::optional<SecretMirror::Operation> over = std::nullopt)
    {
        std::uint64_t number = 0;
        {
            const std::lock_guard lock(mutex);
            number = ++readings;
        }
        const tl::expected<KeyringContents, int> contents =
            keyring != nullptr ? keyring->read(service) : tl::unexpected(secretStatus::notAvailable);
        update([&](SecretMirror &known) {
            if (over) {
                known.settle(*over);
            }
            if (number < latestReading) {
                return;
            }
            latestReading = number;
            if (contents) {
                known.take(*contents);
            } else {
                known.fail(contents.error());
            }
        });
        const std::lock_guard lock(mutex);
        answered();
    }

    template <typename Change>
    void update(Change change)
    {
        const std::lock_guard lock(mutex);
        const SecretMirror before = mirror;
        change(mirror);
        if (owner != nullptr && !mirror.looksLike(before)) {
            QMetaObject::invokeMethod(owner, &SecretStore::changed, Qt::QueuedConnection);
        }
    }

    /// With the lock held.
    void answered()
    {
        if (!std::exchange(hasAnswered, true)) {
            firstAnswer.finish();
            if (owner != nullptr) {
                QMetaObject::invokeMethod(&owner->m_patience, &QTimer::stop, Qt::QueuedConnection);
            }
        }
    }

    void follow()
    {
        {
            const Connection keyring(*this);
            if (keyring.get() == nullptr) {
                read(nullptr);
            } else {
                keyring.get()->follow([&](KeyringEvent event) {
                    if (event == KeyringEvent::changed) {
                        read(keyring.get());
                    } else {
                        update([](SecretMirror &known) { known.gone(); });
                    }
                });
            }
        }
        const std::lock_guard lock(mutex);
        isFollowing = false;
        threadEnded.notify_all();
    }

    void operate()
    {
        while (true) {
            carryOut();
            const std::lock_guard lock(mutex);
            if (operations.empty()) {
                isOperating = false;
                threadEnded.notify_all();
                return;
            }
        }
    }

    void carryOut()
    {
        const Connection keyring(*this);
        std::unique_lock lock(mutex);
        while (!operations.empty()) {
            Operation operation = std::move(operations.front());
            operations.pop_front();
            lock.unlock();
            const int status = keyring.get() != nullptr ? operation.work(*keyring.get()) : secretStatus::notAvailable;
            if (status == secretStatus::serviceNotAvailable) {
                // It would only be waited for once more.
                update([&](SecretMirror &known) { known.settle(operation.number); });
            } else {
                read(keyring.get(), operation.number);
            }
            operation.ended.addResult(status);
            operation.ended.finish();
            lock.lock();
        }
    }

    const QString service;
    const KeyringFactory factory;

    std::mutex mutex;
    std::condition_variable threadEnded;
    /// Null once the store is going away.
    MirroredSecretStore *owner = nullptr;
    SecretMirror mirror;
    /// Each keyring that a thread has now.
    std::vector<Keyring *> keyrings;
    bool hasStarted = false;
    bool isFollowing = false;
    bool isOperating = false;
    std::deque<Operation> operations;
    SecretMirror::Operation latestOperation = 0;
    std::uint64_t readings = 0;
    std::uint64_t latestReading = 0;
    bool hasAnswered = false;
    QPromise<void> firstAnswer;
};

MirroredSecretStore::MirroredSecretStore(QString service, KeyringFactory factory)
    : m_service(std::move(service)), m_shared(std::make_shared<Shared>(m_service, std::move(factory)))
{
    m_shared->owner = this;
    m_patience.setSingleShot(true);
    m_patience.setInterval(patienceForFirstAnswer);
    connect(&m_patience, &QTimer::timeout, this, [this] {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->answered();
    });
}

MirroredSecretStore::~MirroredSecretStore()
{
    std::unique_lock lock(m_shared->mutex);
    m_shared->threadEnded.wait_for(lock, graceForOperations, [this] { return !m_shared->isOperating; });
    m_shared->owner = nullptr;
    for (Keyring *keyring : m_shared->keyrings) {
        keyring->cancel();
    }
    m_shared->threadEnded.wait_for(lock, graceForThreads,
                                   [this] { return !m_shared->isOperating && !m_shared->isFollowing; });
    m_shared->answered();
}

std::optional<QByteArray> MirroredSecretStore::find(const SecretKey &key) const
{
    start();
    const std::lock_guard lock(m_shared->mutex);
    return key.service == m_service ? m_shared->mirror.find(key.account) : std::nullopt;
}

SecretPresence MirroredSecretStore::presence(const SecretKey &key) const
{
    start();
    const std::lock_guard lock(m_shared->mutex);
    return key.service == m_service ? m_shared->mirror.presence(key.account) : SecretPresence::unknown;
}

bool MirroredSecretStore::isAvailable() const
{
    start();
    const std::lock_guard lock(m_shared->mutex);
    return m_shared->mirror.isAvailable();
}

QCoro::Task<> MirroredSecretStore::firstAnswer()
{
    start();
    QFuture<void> answer;
    {
        const std::lock_guard lock(m_shared->mutex);
        answer = m_shared->firstAnswer.future();
        if (!m_shared->hasAnswered && !m_patience.isActive()) {
            m_patience.start();
        }
    }
    co_await answer;
}

QCoro::Task<int> MirroredSecretStore::add(SecretKey key, QByteArray data)
{
    QFuture<int> ended = enqueue([key, data](Keyring &keyring) { return keyring.add(key, data); }, key, data);
    co_return co_await ended;
}

QCoro::Task<int> MirroredSecretStore::remove(SecretKey key)
{
    QFuture<int> ended = enqueue([key](Keyring &keyring) { return keyring.remove(key); }, key, std::nullopt);
    co_return co_await ended;
}

QCoro::Task<int> MirroredSecretStore::unlock(SecretKey key)
{
    QFuture<int> ended = enqueue([key](Keyring &keyring) { return keyring.unlock(key); }, std::nullopt, std::nullopt);
    co_return co_await ended;
}

void MirroredSecretStore::start() const
{
    const std::lock_guard lock(m_shared->mutex);
    if (!std::exchange(m_shared->hasStarted, true)) {
        m_shared->isFollowing = true;
        std::thread([shared = m_shared] { shared->follow(); }).detach();
    }
}

QFuture<int> MirroredSecretStore::enqueue(Work work, const std::optional<SecretKey> &expectedKey,
                                          const std::optional<QByteArray> &expectedData)
{
    start();
    const std::lock_guard lock(m_shared->mutex);
    Shared::Operation operation{.number = ++m_shared->latestOperation, .work = std::move(work), .ended = {}};
    operation.ended.start();
    QFuture<int> ended = operation.ended.future();
    if (expectedKey && expectedKey->service == m_service) {
        m_shared->mirror.expect(operation.number, expectedKey->account, expectedData);
    }
    m_shared->operations.push_back(std::move(operation));
    if (!std::exchange(m_shared->isOperating, true)) {
        std::thread([shared = m_shared] { shared->operate(); }).detach();
    }
    return ended;
}

} // namespace lumenfold
