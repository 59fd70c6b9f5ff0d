#pragma once

#include "platform/secrets/SecretKey.h"

#include <QByteArray>
#include <QCoroTask>
#include <QObject>

#include <optional>

namespace lumenfold {

/// What is known of an item.
enum class SecretPresence {
    /// The keyring has not answered yet, does not answer, or hides what it holds while it is locked.
    unknown,
    /// There is none, or no keyring that could hold one.
    absent,
    /// There is one, and nobody may read it before its keyring is unlocked.
    locked,
    present,
};

/// The keyring of the desktop, where every item is found by service and account and holds bytes.
///
/// Reading answers at once from what is known; a keyring may take seconds to answer, or hang. What other programs do to
/// the items is known a moment later. Items of other services than the one that the store was made for are unknown.
class SecretStore : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The contents of the item, as far as they are known. Neither this nor `presence` asks the user anything. From any
    /// thread.
    [[nodiscard]] virtual std::optional<QByteArray> find(const SecretKey &key) const = 0;
    [[nodiscard]] virtual SecretPresence presence(const SecretKey &key) const = 0;

    /// Whether there is a keyring at all, as far as is known. From any thread.
    [[nodiscard]] virtual bool isAvailable() const = 0;

    /// Ends with the first answer of the keyring, or when it has been waited for long enough. Main thread, as all
    /// below.
    [[nodiscard]] virtual QCoro::Task<> firstAnswer() = 0;

    /// The operations are carried out in the order in which they were asked for. Reading sees them as done at once, and
    /// again as the keyring has it should one fail. They end with a status (see secretStatus). They may ask the user,
    /// with the keyring's own prompt, to unlock it, and then last as long as that takes.
    ///
    /// Adding does not replace: `duplicateItem`.
    [[nodiscard]] virtual QCoro::Task<int> add(SecretKey key, QByteArray data) = 0;
    /// Removes every item of that key; `itemNotFound` when there is none.
    [[nodiscard]] virtual QCoro::Task<int> remove(SecretKey key) = 0;
    /// Makes the item readable if it is locked.
    [[nodiscard]] virtual QCoro::Task<int> unlock(SecretKey key) = 0;

Q_SIGNALS:
    /// An answer of `find`, `presence` or `isAvailable` may be another one, and not because of an operation that was
    /// just asked for here. On the main thread.
    void changed();
};

} // namespace lumenfold
