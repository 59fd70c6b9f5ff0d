#pragma once

#include "platform/secrets/SecretKey.h"

#include <QByteArray>
#include <QString>

#include <tl/expected.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lumenfold {

/// What a keyring holds of one service.
struct KeyringContents {
    struct Item {
        QString account;
        /// Nothing while the item is locked.
        std::optional<QByteArray> data;

        friend bool operator==(const Item &, const Item &) = default;
    };
    std::vector<Item> items;
    /// It is locked and need not tell what else there is.
    bool mayHideItems = false;

    friend bool operator==(const KeyringContents &, const KeyringContents &) = default;
};

/// What a follower is told.
enum class KeyringEvent {
    /// Time to read: now and again, something may have changed.
    changed,
    /// The keyring's program has ended; another one may come.
    gone,
};

/// A connection to the desktop's keyring that waits for its answers, for some seconds where no person is asked. Belongs
/// to one thread, which makes it, uses it and destroys it. Failures are numbers (see secretStatus).
class Keyring {
public:
    Keyring() = default;
    Keyring(const Keyring &) = delete;
    Keyring &operator=(const Keyring &) = delete;
    virtual ~Keyring() = default;

    /// Never asks the user anything.
    [[nodiscard]] virtual tl::expected<KeyringContents, int> read(const QString &service) = 0;

    /// As SecretStore promises; these may last as long as the user takes to answer the keyring's prompt.
    [[nodiscard]] virtual int add(const SecretKey &key, const QByteArray &data) = 0;
    [[nodiscard]] virtual int remove(const SecretKey &key) = 0;
    [[nodiscard]] virtual int unlock(const SecretKey &key) = 0;

    /// Tells what happens, the first time at once, until `cancel`. Without a session bus it ends after the first time.
    virtual void follow(const std::function<void(KeyringEvent)> &onEvent) = 0;

    /// From any thread: whatever waits ends now, and nothing waits from now on.
    virtual void cancel() = 0;
};

/// Called on the thread that the keyring is for. Null where none can be made.
using KeyringFactory = std::function<std::unique_ptr<Keyring>()>;

} // namespace lumenfold
