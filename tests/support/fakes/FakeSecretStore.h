#pragma once

#include "platform/secrets/SecretStore.h"

#include <QStringList>

#include <coroutine>
#include <deque>
#include <map>
#include <memory>

namespace lumenfold::test {

/// A keyring in memory. It answers at once unless the test says otherwise.
class FakeSecretStore : public SecretStore {
    Q_OBJECT

public:
    [[nodiscard]] std::optional<QByteArray> find(const SecretKey &key) const override;
    [[nodiscard]] SecretPresence presence(const SecretKey &key) const override;
    [[nodiscard]] bool isAvailable() const override { return m_isAvailable; }
    [[nodiscard]] QCoro::Task<> firstAnswer() override;
    [[nodiscard]] QCoro::Task<int> add(SecretKey key, QByteArray data) override;
    [[nodiscard]] QCoro::Task<int> remove(SecretKey key) override;
    [[nodiscard]] QCoro::Task<int> unlock(SecretKey key) override;

    /// What happens to the keyring outside the program; each tells of the change.
    void putFromOutside(const SecretKey &key, const QByteArray &data);
    void removeFromOutside(const SecretKey &key);
    void setLocked(bool locked);
    /// Without a keyring there are no items, and every operation ends with `notAvailable`.
    void setAvailable(bool available);

    /// Until `answer()` nothing is known, and `firstAnswer()` lasts.
    void keepSilent();
    /// The first answer, or the end of the patience with a keyring that gives none.
    void answer();
    void giveUp();

    /// What the next operations end with in place of being done, one each.
    void failNextWith(int status);
    /// From now on operations last until the test lets them end, oldest first. A test lets every one end.
    void holdOperations() { m_holdsOperations = true; }
    void finishNext();
    [[nodiscard]] int heldOperations() const { return static_cast<int>(m_held.size()); }

    /// Every operation that was asked for ("remove", "add", "unlock" and the account), in order.
    QStringList operations;
    /// Every item that is there, locked or not.
    [[nodiscard]] const std::map<SecretKey, QByteArray> &items() const { return m_items; }

private:
    struct Pause;
    using Waiting = std::deque<std::coroutine_handle<>>;

    [[nodiscard]] int nextStatus();
    static void resumeAll(Waiting &waiting);

    std::map<SecretKey, QByteArray> m_items;
    /// Of operations that are under way; no value for what is being removed.
    std::map<SecretKey, std::optional<QByteArray>> m_expected;
    bool m_isLocked = false;
    bool m_isAvailable = true;
    bool m_isSilent = false;
    bool m_holdsOperations = false;
    std::deque<int> m_failures;
    Waiting m_held;
    Waiting m_waitingForAnswer;
};

} // namespace lumenfold::test
