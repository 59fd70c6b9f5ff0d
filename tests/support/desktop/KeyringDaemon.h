#pragma once

#include "tests/support/desktop/PrivateFolders.h"
#include "tests/support/desktop/Process.h"

#include <QMap>

#include <memory>
#include <optional>

class QDBusMessage;

namespace lumenfold::test {

struct KeyringDaemonOptions {
    /// A key of LumenFold's that is in the keyring from the beginning.
    std::optional<QByteArray> apiKey{};
    /// Without it the keyring has no password, and unlocking it asks nobody.
    std::optional<QByteArray> password{};
};

/// The desktop's keyring (gnome-keyring) on a bus of the test's own, with one keyring for everything, unlocked. The
/// questions are asked as another program would ask them, plainly over the bus.
class KeyringDaemon {
public:
    using Attributes = QMap<QString, QString>;
    struct Item {
        Attributes attributes;
        QByteArray secret;
    };

    /// Ready when the constructor returns. Throws std::runtime_error when it cannot be made ready.
    explicit KeyringDaemon(const QString &busAddress, const KeyringDaemonOptions &options = {});
    ~KeyringDaemon();
    KeyringDaemon(const KeyringDaemon &) = delete;
    KeyringDaemon &operator=(const KeyringDaemon &) = delete;

    /// Ends the program at once; the keyring's file stays.
    void kill();
    /// Begins anew, with the keyring unlocked if it has no password.
    void start();
    /// It neither ends nor answers until `letGoOn`.
    void hang();
    void letGoOn();

    void lock();
    void unlock();
    /// Every item that is not locked.
    [[nodiscard]] QList<Item> items();
    void add(const Attributes &attributes, const QByteArray &secret);
    void removeAll();

    /// The attributes of the program's own item.
    [[nodiscard]] static Attributes apiKeyAttributes();

private:
    QVariantList call(const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments = {});
    [[nodiscard]] QList<QString> itemPaths();
    [[nodiscard]] QVariant plainSecret(const QByteArray &secret);
    [[nodiscard]] QString openSession();

    const QString m_busAddress;
    const QString m_connectionName;
    const KeyringDaemonOptions m_options;
    QString m_collectionPath;
    PrivateFolders m_folders;
    std::unique_ptr<Process> m_process;
};

} // namespace lumenfold::test
