#include "platform/remoteactions/RunningInstance.h"

#include "platform/session/PrivateBus.h"
#include "platform/session/SessionBus.h"

#include <QByteArray>

namespace lumenfold {
namespace {

/// Appends an empty container.
void appendEmpty(DBusMessageIter &arguments, const char *contents)
{
    DBusMessageIter empty;
    dbus_message_iter_open_container(&arguments, DBUS_TYPE_ARRAY, contents, &empty);
    dbus_message_iter_close_container(&arguments, &empty);
}

bool ask(const QByteArray &address, const QByteArray &action, int patience)
{
    const PrivateBus bus(address, patience);
    if (!bus.isConnected()) {
        return false;
    }
    const BusMessage call(dbus_message_new_method_call(remoteActions::name, remoteActions::path,
                                                       "org.freedesktop.Application",
                                                       action.isEmpty() ? "Activate" : "ActivateAction"));
    // It runs; if it cannot be reached, another one would only find it running.
    dbus_message_set_auto_start(call.get(), FALSE);
    DBusMessageIter arguments;
    dbus_message_iter_init_append(call.get(), &arguments);
    if (!action.isEmpty()) {
        const char *name = action.constData();
        dbus_message_iter_append_basic(&arguments, DBUS_TYPE_STRING, static_cast<const void *>(&name));
        appendEmpty(arguments, "v");
    }
    appendEmpty(arguments, "{sv}");
    return bus.ask(call, patience) != nullptr;
}

} // namespace

bool askRunningInstance(const QByteArray &action, std::chrono::milliseconds patience)
{
    const QByteArray address = qgetenv(sessionBusVariable);
    if (address.isEmpty()) {
        return false;
    }
    return answerWithin(patience,
                        [address, action, patience = static_cast<int>(patience.count())] {
                            return ask(address, action, patience);
                        })
        .value_or(false);
}

} // namespace lumenfold
