#pragma once

#include "platform/secrets/Keyring.h"
#include "platform/secrets/libsecret/GlibPointers.h"

// Functions that name objects by their path on the bus, which do not load every item of every keyring.
#define SECRET_API_SUBJECT_TO_CHANGE
#include <libsecret/secret.h>

namespace lumenfold {

/// The Secret Service of the session bus. Nothing here waits longer than some seconds, except for a person.
class LibsecretKeyring : public Keyring {
public:
    LibsecretKeyring();
    ~LibsecretKeyring() override;

    [[nodiscard]] tl::expected<KeyringContents, int> read(const QString &service) override;
    [[nodiscard]] int add(const SecretKey &key, const QByteArray &data) override;
    [[nodiscard]] int remove(const SecretKey &key) override;
    [[nodiscard]] int unlock(const SecretKey &key) override;
    void follow(const std::function<void(KeyringEvent)> &onEvent) override;
    void cancel() override;

private:
    static constexpr const char *busName = "org.freedesktop.secrets";
    static constexpr const char *servicePath = "/org/freedesktop/secrets";

    struct Paths {
        glib::Strings unlocked;
        glib::Strings locked;
    };
    struct Following;

    /// Whether the bus is there. Everything else wants this first.
    [[nodiscard]] int connectToBus();
    /// Whether there is a service that answers; starts it if need be.
    [[nodiscard]] int connectToService();
    [[nodiscard]] tl::expected<Paths, int> search(GHashTable *attributes);
    [[nodiscard]] int unlock(const gchar *const *paths);
    /// The default keyring's path while it is locked, else nothing.
    [[nodiscard]] glib::String lockedDefaultCollection();
    [[nodiscard]] std::optional<KeyringContents::Item> readItem(const gchar *path);
    [[nodiscard]] int statusOf(const glib::Error &error);

    const glib::Context m_context;
    const glib::Object<GCancellable> m_cancellable;
    glib::Object<GDBusConnection> m_bus;
    glib::Object<SecretService> m_service;
    /// The latest answer that was waited for did not come.
    bool m_isHanging = false;
};

} // namespace lumenfold
