#include "platform/remoteactions/DBusRemoteActions.h"

#include "platform/remoteactions/ApplicationAdaptor.h"
#include "platform/remoteactions/RunningInstance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDebug>

#include <utility>

namespace lumenfold {
namespace {

const QString name = QString::fromLatin1(remoteActions::name);
const QString path = QString::fromLatin1(remoteActions::path);

QDBusMessage askBus(const QString &method)
{
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                          QStringLiteral("/org/freedesktop/DBus"),
                                          QStringLiteral("org.freedesktop.DBus"), method);
}

} // namespace

DBusRemoteActions::~DBusRemoteActions()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (m_isPublished && bus.isConnected()) {
        bus.unregisterObject(path);
        bus.send(askBus(QStringLiteral("ReleaseName")) << name);
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
    m_isPublished = true;
    constexpr uint doNotQueue = 4;
    auto *answer =
        new QDBusPendingCallWatcher(bus.asyncCall(askBus(QStringLiteral("RequestName")) << name << doNotQueue), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [answer] {
        answer->deleteLater();
        constexpr uint isOwner = 1;
        if (answer->reply().arguments().value(0).toUInt() != isOwner) {
            qWarning().noquote().nospace() << "LumenFold: the session bus does not give it the name " << name
                                           << ", so the desktop cannot reach it";
        }
    });
}

} // namespace lumenfold
