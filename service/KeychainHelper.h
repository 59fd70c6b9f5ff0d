#pragma once

#include "platform/secrets/SecretStore.h"

#include <QCoroTask>
#include <QString>

#include <optional>

namespace lumenfold {

/// The program's texts in the desktop's keyring, each under a key of its own. Reading keeps nothing and never waits;
/// see SecretStore for what it knows. Main thread, except for `read`.
class KeychainHelper {
public:
    /// The service of every item that is touched here: the application's identifier.
    static const QString service;

    /// The store must outlive this object, and the operations that are asked for.
    explicit KeychainHelper(SecretStore &store);

    /// The one of the program, which the composition root made and named with `setShared`.
    [[nodiscard]] static KeychainHelper &shared();
    /// Not owned; null when it goes away.
    static void setShared(KeychainHelper *helper);

    /// Puts the value in place of what is there. Ends when the keyring has it or has refused it, which only the log
    /// tells. The keyring may ask the user to unlock it.
    QCoro::Task<> write(QString key, QString value);

    /// The value, if the item is there, may be read and is UTF-8. From any thread.
    [[nodiscard]] std::optional<QString> read(const QString &key) const;

    /// Removes the item, if it is there. Reading says so at once; the keyring follows, and a failure is silent.
    void remove(const QString &key);

    [[nodiscard]] SecretPresence presence(const QString &key) const;
    /// Asks the user, with the keyring's own prompt, to unlock the item if it is locked. Ends with his answer.
    QCoro::Task<> unlock(QString key);

    [[nodiscard]] SecretStore &store() const { return m_store; }

private:
    [[nodiscard]] static SecretKey baseQuery(const QString &account);

    SecretStore &m_store;
};

} // namespace lumenfold
