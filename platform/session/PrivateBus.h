#pragma once

#include <QByteArray>

#include <dbus/dbus.h>

#include <memory>

namespace lumenfold {

struct BusMessageDeleter {
    void operator()(DBusMessage *message) const { dbus_message_unref(message); }
};
using BusMessage = std::unique_ptr<DBusMessage, BusMessageDeleter>;

/// A connection to a message bus for a question or two, without the toolkit and before it: unlike the library's own
/// greeting, everything here has an end, except the connecting itself. Any one thread.
class PrivateBus {
public:
    /// Connects and greets; `patience` in milliseconds.
    PrivateBus(const QByteArray &address, int patience);
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;
    ~PrivateBus();

    [[nodiscard]] bool isConnected() const { return m_isGreeted; }
    /// Null for an error and when the time is over.
    [[nodiscard]] BusMessage ask(const BusMessage &question, int patience) const;

private:
    DBusConnection *m_connection;
    bool m_isGreeted = false;
};

} // namespace lumenfold
