#include "tests/support/fakes/FakeSecretStore.h"

#include <utility>

namespace lumenfold::test {

/// Suspends into a list, or not at all.
struct FakeSecretStore::Pause {
    Waiting *waiting;

    [[nodiscard]] bool await_ready() const noexcept { return waiting == nullptr; }
    void await_suspend(std::coroutine_handle<> coroutine) const { waiting->push_back(coroutine); }
    void await_resume() const noexcept {}
};

std::optional<QByteArray> FakeSecretStore::find(const SecretKey &key) const
{
    if (m_isSilent) {
        return std::nullopt;
    }
    if (const auto expected = m_expected.find(key); expected != m_expected.end()) {
        return expected->second;
    }
    const auto found = m_items.find(key);
    return found == m_items.end() || m_isLocked || !m_isAvailable ? std::nullopt : std::optional(found->second);
}

SecretPresence FakeSecretStore::presence(const SecretKey &key) const
{
    if (m_isSilent) {
        return SecretPresence::unknown;
    }
    if (const auto expected = m_expected.find(key); expected != m_expected.end()) {
        return expected->second ? SecretPresence::present : SecretPresence::absent;
    }
    if (!m_isAvailable || !m_items.contains(key)) {
        return SecretPresence::absent;
    }
    return m_isLocked ? SecretPresence::locked : SecretPresence::present;
}

QCoro::Task<> FakeSecretStore::firstAnswer()
{
    Pause pause{m_isSilent ? &m_waitingForAnswer : nullptr};
    co_await pause;
}

QCoro::Task<int> FakeSecretStore::add(SecretKey key, QByteArray data)
{
    operations.append(QStringLiteral("add ") + key.account);
    m_expected[key] = data;
    Pause pause{m_holdsOperations ? &m_held : nullptr};
    co_await pause;
    m_expected.erase(key);
    int status = nextStatus();
    if (status == secretStatus::success && m_items.contains(key)) {
        status = secretStatus::duplicateItem;
    }
    if (status == secretStatus::success) {
        m_items[key] = data;
        m_isLocked = false;
    } else {
        Q_EMIT changed();
    }
    co_return status;
}

QCoro::Task<int> FakeSecretStore::remove(SecretKey key)
{
    operations.append(QStringLiteral("remove ") + key.account);
    m_expected[key] = std::nullopt;
    Pause pause{m_holdsOperations ? &m_held : nullptr};
    co_await pause;
    const int status = nextStatus();
    if (const auto expected = m_expected.find(key); expected != m_expected.end() && !expected->second) {
        m_expected.erase(expected);
    }
    if (status != secretStatus::success) {
        Q_EMIT changed();
        co_return status;
    }
    const bool wasThere = m_items.erase(key) > 0;
    co_return wasThere ? secretStatus::success : secretStatus::itemNotFound;
}

QCoro::Task<int> FakeSecretStore::unlock(SecretKey key)
{
    operations.append(QStringLiteral("unlock ") + key.account);
    Pause pause{m_holdsOperations ? &m_held : nullptr};
    co_await pause;
    const int status = nextStatus();
    if (status == secretStatus::success) {
        setLocked(false);
    }
    co_return status;
}

void FakeSecretStore::putFromOutside(const SecretKey &key, const QByteArray &data)
{
    m_items[key] = data;
    Q_EMIT changed();
}

void FakeSecretStore::removeFromOutside(const SecretKey &key)
{
    m_items.erase(key);
    Q_EMIT changed();
}

void FakeSecretStore::setLocked(bool locked)
{
    m_isLocked = locked;
    Q_EMIT changed();
}

void FakeSecretStore::setAvailable(bool available)
{
    m_isAvailable = available;
    Q_EMIT changed();
}

void FakeSecretStore::keepSilent()
{
    m_isSilent = true;
}

void FakeSecretStore::answer()
{
    m_isSilent = false;
    Q_EMIT changed();
    giveUp();
}

void FakeSecretStore::giveUp()
{
    resumeAll(m_waitingForAnswer);
}

void FakeSecretStore::failNextWith(int status)
{
    m_failures.push_back(status);
}

void FakeSecretStore::finishNext()
{
    const std::coroutine_handle<> operation = m_held.front();
    m_held.pop_front();
    operation.resume();
}

int FakeSecretStore::nextStatus()
{
    if (!m_failures.empty()) {
        const int status = m_failures.front();
        m_failures.pop_front();
        return status;
    }
    return m_isAvailable ? secretStatus::success : secretStatus::notAvailable;
}

void FakeSecretStore::resumeAll(Waiting &waiting)
{
    for (const std::coroutine_handle<> each : std::exchange(waiting, {})) {
        each.resume();
    }
}

} // namespace lumenfold::test
