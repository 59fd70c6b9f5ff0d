#pragma once

#include "platform/secrets/Keyring.h"
#include "platform/secrets/SecretStore.h"

#include <QMap>

#include <cstdint>
#include <deque>

namespace lumenfold {

/// What is known of a keyring's items of one service: its latest answer, and on top of it what it has been asked to do
/// since. A value; whoever shares it among threads locks.
class SecretMirror {
public:
    using Operation = std::uint64_t;

    [[nodiscard]] std::optional<QByteArray> find(const QString &account) const;
    [[nodiscard]] SecretPresence presence(const QString &account) const;
    /// True until it is known that there is no keyring.
    [[nodiscard]] bool isAvailable() const { return m_isAvailable; }

    /// An operation has been asked for: reading sees the item with these contents, or without contents as removed.
    void expect(Operation operation, const QString &account, const std::optional<QByteArray> &data);
    /// The operation is over; the latest answer of the keyring holds what became of it.
    void settle(Operation operation);

    void take(const KeyringContents &contents);
    /// The keyring could not be read. One that hangs holds what it held.
    void fail(int status);
    /// The keyring's program has ended: the items are where they were, but nobody can read them.
    void gone();

    /// Equal when everything that can be asked is answered alike.
    [[nodiscard]] bool looksLike(const SecretMirror &other) const;

private:
    struct Expected {
        Operation operation;
        QString account;
        std::optional<QByteArray> data;
    };

    [[nodiscard]] const Expected *expected(const QString &account) const;

    bool m_hasAnswered = false;
    bool m_isAvailable = true;
    bool m_mayHideItems = false;
    QMap<QString, std::optional<QByteArray>> m_items;
    /// In the order in which they were asked for.
    std::deque<Expected> m_expected;
};

} // namespace lumenfold
