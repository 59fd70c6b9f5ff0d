#include "platform/session/SessionBus.h"

#include <QByteArray>

#include <dbus/dbus.h>

#include <future>
#include <memory>
#include <thread>

namespace lumenfold {
namespace {

template <auto release>
struct Release {
    template <typename T>
    void operator()(T *thing) const
    {
        release(thing);
    }
};
using Message = std::unique_ptr<DBusMessage, Release<&dbus_message_unref>>;

/// The library's own greeting has no end to its patience and keeps others from greeting meanwhile.
void greet(const QByteArray &address, int patience)
{
    DBusConnection *bus = dbus_connection_open_private(address.constData(), nullptr);
    if (bus == nullptr) {
        return;
    }
    dbus_connection_set_exit_on_disconnect(bus, FALSE);
    const Message hello(dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "Hello"));
    const Message answer(dbus_connection_send_with_reply_and_block(bus, hello.get(), patience, nullptr));
    dbus_connection_close(bus);
    dbus_connection_unref(bus);
}

} // namespace

SessionBusState greetSessionBus(std::chrono::milliseconds patience)
{
    const QByteArray address = qgetenv(sessionBusVariable);
    if (address.isEmpty()) {
        return SessionBusState::clear;
    }
    dbus_threads_init_default();
    auto greeted = std::make_shared<std::promise<void>>();
    const std::future<void> answered = greeted->get_future();
    // Nobody waits for this thread: the greeting has an end, but already the connecting may have none.
    std::thread([greeted, address, patience = static_cast<int>(patience.count())] {
        greet(address, 2 * patience);
        greeted->set_value();
    }).detach();
    return answered.wait_for(patience) == std::future_status::ready ? SessionBusState::clear : SessionBusState::hanging;
}

void doWithoutSessionBus()
{
    qputenv(sessionBusVariable, noSessionBus);
}

} // namespace lumenfold
