#include "platform/secrets/libsecret/LibsecretKeyring.h"

#include "platform/session/SessionBus.h"

#include <array>
#include <string_view>

namespace lumenfold {
namespace {

constexpr const char *collectionInterface = "org.freedesktop.Secret.Collection";
/// As secrets are shown in the desktop's own list of them.
constexpr const char *itemLabel = "LumenFold";

/// A service that has to be started first may take a while; milliseconds.
constexpr int patience = 10'000;

constexpr const char *serviceAttribute = "service";
constexpr const char *accountAttribute = "account";

glib::Table attributesOf(const QString &service)
{
    glib::Table table(g_hash_table_new_full(g_str_hash, g_str_equal, nullptr, g_free));
    g_hash_table_insert(table.get(), const_cast<char *>(serviceAttribute), g_strdup(service.toUtf8().constData()));
    return table;
}

glib::Table attributesOf(const SecretKey &key)
{
    glib::Table table = attributesOf(key.service);
    g_hash_table_insert(table.get(), const_cast<char *>(accountAttribute), g_strdup(key.account.toUtf8().constData()));
    return table;
}

bool isEmpty(const glib::Strings &strings)
{
    return !strings || *strings == nullptr;
}

} // namespace

LibsecretKeyring::LibsecretKeyring() : m_context(g_main_context_new()), m_cancellable(g_cancellable_new())
{
    g_main_context_push_thread_default(m_context.get());
}

LibsecretKeyring::~LibsecretKeyring()
{
    m_service.reset();
    m_bus.reset();
    // What the library has put off until its context comes round again.
    while (g_main_context_iteration(m_context.get(), FALSE) != FALSE) {
    }
    g_main_context_pop_thread_default(m_context.get());
}

int LibsecretKeyring::connectToBus()
{
    if (m_bus) {
        return secretStatus::success;
    }
    if (const char *address = g_getenv(sessionBusVariable);
        address != nullptr && std::string_view(address) == noSessionBus) {
        // It hangs, and what the keyring behind it holds is not known.
        return secretStatus::serviceNotAvailable;
    }
    glib::Error error;
    m_bus.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, m_cancellable.get(), error.out()));
    if (!m_bus) {
        return statusOf(error);
    }
    // The library would end the process with the bus.
    g_dbus_connection_set_exit_on_close(m_bus.get(), FALSE);
    return secretStatus::success;
}

int LibsecretKeyring::connectToService()
{
    if (const int status = connectToBus(); status != secretStatus::success) {
        return status;
    }
    // The library's own calls wait longer, so it is asked only after a service that is known to answer.
    glib::Error error;
    m_isHanging = false;
    const glib::Variant pong(g_dbus_connection_call_sync(m_bus.get(), busName, servicePath, "org.freedesktop.DBus.Peer",
                                                         "Ping", nullptr, nullptr, G_DBUS_CALL_FLAGS_NONE, patience,
                                                         m_cancellable.get(), error.out()));
    if (!pong) {
        m_service.reset();
        return statusOf(error);
    }
    if (!m_service) {
        m_service.reset(secret_service_open_sync(SECRET_TYPE_SERVICE, nullptr, SECRET_SERVICE_NONE, m_cancellable.get(),
                                                 error.out()));
        if (!m_service) {
            return statusOf(error);
        }
        g_dbus_proxy_set_default_timeout(G_DBUS_PROXY(m_service.get()), patience);
    }
    return secretStatus::success;
}

tl::expected<LibsecretKeyring::Paths, int> LibsecretKeyring::search(GHashTable *attributes)
{
    glib::Error error;
    gchar **unlocked = nullptr;
    gchar **locked = nullptr;
    // No schema: it would want an attribute of its own in every item.
    const bool found = secret_service_search_for_dbus_paths_sync(m_service.get(), nullptr, attributes,
                                                                 m_cancellable.get(), &unlocked, &locked, error.out());
    if (!found) {
        return tl::unexpected(statusOf(error));
    }
    return Paths{.unlocked = glib::Strings(unlocked), .locked = glib::Strings(locked)};
}

tl::expected<KeyringContents, int> LibsecretKeyring::read(const QString &service)
{
    if (const int status = connectToService(); status != secretStatus::success) {
        return tl::unexpected(status);
    }
    const auto paths = search(attributesOf(service).get());
    if (!paths) {
        return tl::unexpected(paths.error());
    }
    KeyringContents contents;
    for (const glib::Strings *found : {&paths->unlocked, &paths->locked}) {
        for (gchar **path = found->get(); path != nullptr && *path != nullptr; ++path) {
            if (auto item = readItem(*path)) {
                contents.items.push_back(*std::move(item));
            }
        }
    }
    contents.mayHideItems = lockedDefaultCollection() != nullptr;
    return contents;
}

std::optional<KeyringContents::Item> LibsecretKeyring::readItem(const gchar *path)
{
    glib::Error error;
    const glib::Object<SecretItem> item(secret_item_new_for_dbus_path_sync(
        m_service.get(), path, SECRET_ITEM_LOAD_SECRET, m_cancellable.get(), error.out()));
    if (!item) {
        // Gone meanwhile, or somebody else's trouble.
        return std::nullopt;
    }
    const glib::Table attributes(secret_item_get_attributes(item.get()));
    const auto *account = static_cast<const char *>(g_hash_table_lookup(attributes.get(), accountAttribute));
    if (account == nullptr) {
        return std::nullopt;
    }
    KeyringContents::Item found{.account = QString::fromUtf8(account), .data = {}};
    if (SecretValue *secret = secret_item_get_secret(item.get()); secret != nullptr) {
        gsize length = 0;
        const gchar *bytes = secret_value_get(secret, &length);
        found.data = QByteArray(bytes, static_cast<qsizetype>(length));
        secret_value_unref(secret);
    }
    return found;
}

int LibsecretKeyring::add(const SecretKey &key, const QByteArray &data)
{
    if (const int status = connectToService(); status != secretStatus::success) {
        return status;
    }
    const glib::Table attributes = attributesOf(key);
    const auto present = search(attributes.get());
    if (!present) {
        return present.error();
    }
    if (!isEmpty(present->unlocked) || !isEmpty(present->locked)) {
        return secretStatus::duplicateItem;
    }
    glib::Error error;
    SecretValue *value = secret_value_new(data.constData(), data.size(), "text/plain");
    const bool stored = secret_service_store_sync(m_service.get(), nullptr, attributes.get(), SECRET_COLLECTION_DEFAULT,
                                                  itemLabel, value, m_cancellable.get(), error.out());
    secret_value_unref(value);
    return stored ? secretStatus::success : statusOf(error);
}

int LibsecretKeyring::remove(const SecretKey &key)
{
    if (const int status = connectToService(); status != secretStatus::success) {
        return status;
    }
    const auto paths = search(attributesOf(key).get());
    if (!paths) {
        return paths.error();
    }
    if (isEmpty(paths->unlocked) && isEmpty(paths->locked)) {
        return secretStatus::itemNotFound;
    }
    if (!isEmpty(paths->locked)) {
        if (const int status = unlock(paths->locked.get()); status != secretStatus::success) {
            return status;
        }
    }
    int status = secretStatus::success;
    for (const glib::Strings *found : {&paths->unlocked, &paths->locked}) {
        for (gchar **path = found->get(); path != nullptr && *path != nullptr; ++path) {
            glib::Error error;
            if (secret_service_delete_item_dbus_path_sync(m_service.get(), *path, m_cancellable.get(), error.out()) ==
                FALSE) {
                status = statusOf(error);
            }
        }
    }
    return status;
}

int LibsecretKeyring::unlock(const SecretKey &key)
{
    if (const int status = connectToService(); status != secretStatus::success) {
        return status;
    }
    const auto paths = search(attributesOf(key).get());
    if (!paths) {
        return paths.error();
    }
    if (!isEmpty(paths->unlocked)) {
        return secretStatus::success;
    }
    if (!isEmpty(paths->locked)) {
        return unlock(paths->locked.get());
    }
    if (const glib::String collection = lockedDefaultCollection()) {
        const std::array<const gchar *, 2> only{collection.get(), nullptr};
        return unlock(only.data());
    }
    return secretStatus::itemNotFound;
}

int LibsecretKeyring::unlock(const gchar *const *paths)
{
    glib::Error error;
    gchar **unlocked = nullptr;
    // The library's declaration forgets what it does not change.
    const int count = secret_service_unlock_dbus_paths_sync(m_service.get(), const_cast<const gchar **>(paths),
                                                            m_cancellable.get(), &unlocked, error.out());
    const glib::Strings owned(unlocked);
    if (error.get() != nullptr) {
        return statusOf(error);
    }
    return count > 0 ? secretStatus::success : secretStatus::userCanceled;
}

glib::String LibsecretKeyring::lockedDefaultCollection()
{
    glib::Error error;
    glib::String path(secret_service_read_alias_dbus_path_sync(m_service.get(), SECRET_COLLECTION_DEFAULT,
                                                               m_cancellable.get(), error.out()));
    if (!path) {
        return nullptr;
    }
    const glib::Variant answer(
        g_dbus_connection_call_sync(m_bus.get(), busName, path.get(), "org.freedesktop.DBus.Properties", "Get",
                                    g_variant_new("(ss)", collectionInterface, "Locked"), G_VARIANT_TYPE("(v)"),
                                    G_DBUS_CALL_FLAGS_NONE, patience, m_cancellable.get(), error.out()));
    if (!answer) {
        return nullptr;
    }
    GVariant *inner = nullptr;
    g_variant_get(answer.get(), "(v)", &inner);
    const glib::Variant value(inner);
    const bool isLocked = g_variant_is_of_type(inner, G_VARIANT_TYPE_BOOLEAN) && g_variant_get_boolean(inner);
    return isLocked ? std::move(path) : nullptr;
}

int LibsecretKeyring::statusOf(const glib::Error &error)
{
    const GError *what = error.get();
    if (what == nullptr || g_error_matches(what, G_IO_ERROR, G_IO_ERROR_CANCELLED)) {
        return secretStatus::userCanceled;
    }
    if (g_error_matches(what, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) ||
        g_error_matches(what, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY) ||
        g_error_matches(what, G_DBUS_ERROR, G_DBUS_ERROR_TIMEOUT) ||
        g_error_matches(what, G_DBUS_ERROR, G_DBUS_ERROR_TIMED_OUT)) {
        m_isHanging = true;
        return secretStatus::serviceNotAvailable;
    }
    // Whatever else keeps the service or the bus from being reached; what the service itself says is of other domains.
    const bool isOfService = what->domain == SECRET_ERROR || g_dbus_error_is_remote_error(what);
    const bool isServiceMissing = g_error_matches(what, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) ||
                                  g_error_matches(what, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER) ||
                                  (what->domain == G_DBUS_ERROR && what->code >= G_DBUS_ERROR_SPAWN_EXEC_FAILED &&
                                   what->code <= G_DBUS_ERROR_SPAWN_NO_MEMORY);
    return isServiceMissing || !isOfService ? secretStatus::notAvailable : secretStatus::internalComponent;
}

void LibsecretKeyring::cancel()
{
    g_cancellable_cancel(m_cancellable.get());
    g_main_context_wakeup(m_context.get());
}

} // namespace lumenfold
