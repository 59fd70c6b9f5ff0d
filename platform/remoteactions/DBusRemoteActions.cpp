#include "platform/remoteactions/DBusRemoteActions.h"

#include "platform/remoteactions/ApplicationAdaptor.h"
#include "platform/remoteactions/RunningInstance.h"
#include "platform/session/BusName.h"

#include <QDBusConnection>
#include <QDebug>

#include <utility>

namespace lumenfold {
namespace {

const QString name = QString::fromLatin1(remoteActions::name);
const QString path = QString::fromLatin1(remoteActions::path);

} // namespace

DBusRemoteActions::DBusRemoteActions() = default;

DBusRemoteActions::~DBusRemoteActions()
{
    if (m_name) {
        QDBusConnection::sessionBus().unregisterObject(path);
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
    if (!bus.isConnected() || !bus.registerObject(path, &m_application)) {
        return;
    }
    m_name = std::make_unique<BusName>(bus, name, [](bool isOurs) {
        if (!isOurs) {
            qWarning().noquote().nospace() << "LumenFold: the session bus does not give it the name " << name
                                           << ", so the desktop cannot reach it";
        }
    });
}

} // namespace lumenfold
