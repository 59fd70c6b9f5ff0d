#include "platform/secrets/libsecret/LibsecretKeyring.h"

namespace lumenfold {

/// What the callbacks of one `follow` share.
struct LibsecretKeyring::Following {
    LibsecretKeyring &keyring;
    const std::function<void(KeyringEvent)> &onEvent;
    /// Many signals may come at once, and one reading answers them all.
    bool mustRead = true;
    bool isWaitingForSignOfLife = false;

    /// The service's program has come or gone.
    static void ownerChanged(GDBusConnection *, const gchar *, const gchar *, const gchar *, const gchar *,
                             GVariant *parameters, gpointer data)
    {
        auto *self = static_cast<Following *>(data);
        const gchar *newOwner = nullptr;
        g_variant_get(parameters, "(&s&s&s)", nullptr, nullptr, &newOwner);
        self->keyring.m_service.reset();
        if (*newOwner == '\0') {
            self->onEvent(KeyringEvent::gone);
        } else {
            self->mustRead = true;
        }
    }

    /// Items and keyrings that were made, changed, removed, locked or unlocked.
    static void serviceSpoke(GDBusConnection *, const gchar *, const gchar *, const gchar *, const gchar *, GVariant *,
                             gpointer data)
    {
        static_cast<Following *>(data)->mustRead = true;
    }

    static void serviceLives(GObject *bus, GAsyncResult *result, gpointer data)
    {
        glib::Error error;
        const glib::Variant answer(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, error.out()));
        auto *self = static_cast<Following *>(data);
        self->isWaitingForSignOfLife = false;
        self->mustRead |= answer != nullptr;
    }

    /// Asks a service that hangs for an answer whenever it can give one; costs nothing meanwhile.
    void waitForSignOfLife()
    {
        isWaitingForSignOfLife = true;
        g_dbus_connection_call(keyring.m_bus.get(), busName, servicePath, "org.freedesktop.DBus.Peer", "Ping", nullptr,
                               nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, G_MAXINT, keyring.m_cancellable.get(),
                               serviceLives, this);
    }
};

void LibsecretKeyring::follow(const std::function<void(KeyringEvent)> &onEvent)
{
    if (connectToBus() != secretStatus::success) {
        onEvent(KeyringEvent::changed);
        return;
    }
    Following following{.keyring = *this, .onEvent = onEvent};
    const guint owner = g_dbus_connection_signal_subscribe(
        m_bus.get(), "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged", "/org/freedesktop/DBus",
        busName, G_DBUS_SIGNAL_FLAGS_NONE, Following::ownerChanged, &following, nullptr);
    const guint signals =
        g_dbus_connection_signal_subscribe(m_bus.get(), busName, nullptr, nullptr, nullptr, nullptr,
                                           G_DBUS_SIGNAL_FLAGS_NONE, Following::serviceSpoke, &following, nullptr);
    while (g_cancellable_is_cancelled(m_cancellable.get()) == FALSE) {
        if (following.mustRead) {
            following.mustRead = false;
            onEvent(KeyringEvent::changed);
            if (m_isHanging && !following.isWaitingForSignOfLife) {
                following.waitForSignOfLife();
            }
        }
        g_main_context_iteration(m_context.get(), following.mustRead ? FALSE : TRUE);
    }
    g_dbus_connection_signal_unsubscribe(m_bus.get(), signals);
    g_dbus_connection_signal_unsubscribe(m_bus.get(), owner);
    // What was called off still tells so.
    while (following.isWaitingForSignOfLife || g_main_context_pending(m_context.get()) != FALSE) {
        g_main_context_iteration(m_context.get(), TRUE);
    }
}

} // namespace lumenfold
