#include "platform/remoteactions/DBusRemoteActions.h"

#include "platform/remoteactions/ApplicationAdaptor.h"
#include "platform/remoteactions/RunningInstance.h"
#include "platform/session/BusName.h"

#include <QDBusConnection>
#include <QDebug>

#include <utility>

namespace lumenfold {
namespace {

const QString busName = QString::fromLatin1(remoteActions::name);
const QString objectPath = QString::fromLatin1(remoteActions::path);

} // namespace

DBusRemoteActions::DBusRemoteActions() = default;

DBusRemoteActions::~DBusRemoteActions()
{
    if (m_name) {
        QDBusConnection::sessionBus().unregisterObject(objectPath);
    }
}

void DBusRemoteActions::publish(RemoteCommands commands)
{
    new ApplicationAdaptor(std::move(commands), &m_application);
    QMetaObject::invokeMethod(this, &DBusRemoteActions::begin, Qt::QueuedConnection);
}

void DBusRemoteActions::begin()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    // The object goes first: who was waiting for the name calls at once.
    if (!bus.isConnected() || !bus.registerObject(objectPath, &m_application)) {
        return;
    }
    m_name = std::make_unique<BusName>(bus, busName, [](bool isOurs) {
        if (!isOurs) {
            qWarning().noquote().nospace() << "LumenFold: the session bus does not give it the name " << busName
                                           << ", so the desktop cannot reach it";
        }
    });
}

} // namespace lumenfold
