#pragma once

#include "platform/secrets/Keyring.h"
#include "platform/secrets/SecretStore.h"

#include <QFuture>
#include <QTimer>

#include <memory>

namespace lumenfold {

/// Keeps what a keyring holds of one service at hand, so that reading never waits for it.
///
/// A thread follows the keyring and reads it anew whenever it says that something may have changed; between that it
/// sleeps. Operations have a thread of their own for as long as there are any, one after the other, so that a prompt
/// that nobody answers keeps nobody from reading. Nothing happens before somebody asks for something.
class MirroredSecretStore : public SecretStore {
    Q_OBJECT

public:
    /// The factory is called on other threads.
    MirroredSecretStore(QString service, KeyringFactory factory);
    /// Gives operations that are under way a moment, and waits for nobody who hangs.
    ~MirroredSecretStore() override;

    [[nodiscard]] std::optional<QByteArray> find(const SecretKey &key) const override;
    [[nodiscard]] SecretPresence presence(const SecretKey &key) const override;
    [[nodiscard]] bool isAvailable() const override;
    [[nodiscard]] QCoro::Task<> firstAnswer() override;
    [[nodiscard]] QCoro::Task<int> add(SecretKey key, QByteArray data) override;
    [[nodiscard]] QCoro::Task<int> remove(SecretKey key) override;
    [[nodiscard]] QCoro::Task<int> unlock(SecretKey key) override;

private:
    struct Shared;
    using Work = std::function<int(Keyring &)>;

    void start() const;
    /// Does the work on the thread of the operations.
    [[nodiscard]] QFuture<int> enqueue(Work work, const std::optional<SecretKey> &expectedKey,
                                       const std::optional<QByteArray> &expectedData);

    const QString m_service;
    /// Outlives this object for as long as a thread hangs.
    const std::shared_ptr<Shared> m_shared;
    QTimer m_patience;
};

} // namespace lumenfold
