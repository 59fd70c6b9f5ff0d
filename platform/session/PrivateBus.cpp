#include "platform/session/PrivateBus.h"

namespace lumenfold {

PrivateBus::PrivateBus(const QByteArray &address, int patience)
    : m_connection(dbus_connection_open_private(address.constData(), nullptr))
{
    if (m_connection == nullptr) {
        return;
    }
    dbus_connection_set_exit_on_disconnect(m_connection, FALSE);
    const BusMessage hello(
        dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "Hello"));
    m_isGreeted = ask(hello, patience) != nullptr;
}

PrivateBus::~PrivateBus()
{
    if (m_connection != nullptr) {
        dbus_connection_close(m_connection);
        dbus_connection_unref(m_connection);
    }
}

BusMessage PrivateBus::ask(const BusMessage &question, int patience) const
{
    return BusMessage(dbus_connection_send_with_reply_and_block(m_connection, question.get(), patience, nullptr));
}

} // namespace lumenfold
