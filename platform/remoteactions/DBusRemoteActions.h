#pragma once

#include "platform/remoteactions/RemoteActions.h"

#include <QObject>

#include <memory>

namespace lumenfold {

class BusName;

/// On the session bus, as desktop files with DBusActivatable expect it: the application's identifier as name, its path,
/// and org.freedesktop.Application. Without a bus nobody can ask, and that is all.
class DBusRemoteActions : public QObject, public RemoteActions {
    Q_OBJECT

public:
    DBusRemoteActions();
    ~DBusRemoteActions() override;

    /// Connects in a later turn of the event loop. Called once.
    void publish(RemoteCommands commands) override;

private:
    void begin();

    QObject m_application;
    /// Once the object is on the bus.
    std::unique_ptr<BusName> m_name;
};

} // namespace lumenfold
