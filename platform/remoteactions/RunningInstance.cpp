#include "platform/remoteactions/RunningInstance.h"

#include "platform/session/PrivateBus.h"
#include "platform/session/SessionBus.h"

#include <QByteArray>

#include <future>
#include <memory>
#include <thread>

namespace lumenfold {
namespace {

bool activate(const QByteArray &address, int patience)
{
    const PrivateBus bus(address, patience);
    if (!bus.isConnected()) {
        return false;
    }
    const BusMessage call(dbus_message_new_method_call(remoteActions::name, remoteActions::path,
                                                       "org.freedesktop.Application", "Activate"));
    // It runs; if it cannot be reached, another one would only find it running.
    dbus_message_set_auto_start(call.get(), FALSE);
    DBusMessageIter arguments;
    DBusMessageIter platformData;
    dbus_message_iter_init_append(call.get(), &arguments);
    dbus_message_iter_open_container(&arguments, DBUS_TYPE_ARRAY, "{sv}", &platformData);
    dbus_message_iter_close_container(&arguments, &platformData);
    return bus.ask(call, patience) != nullptr;
}

} // namespace

bool activateRunningInstance(std::chrono::milliseconds patience)
{
    const QByteArray address = qgetenv(sessionBusVariable);
    if (address.isEmpty()) {
        return false;
    }
    dbus_threads_init_default();
    auto outcome = std::make_shared<std::promise<bool>>();
    std::future<bool> answered = outcome->get_future();
    // Nobody waits for this thread: already the connecting may have no end.
    std::thread([outcome, address, patience = static_cast<int>(patience.count())] {
        outcome->set_value(activate(address, patience));
    }).detach();
    return answered.wait_for(patience) == std::future_status::ready && answered.get();
}

} // namespace lumenfold
