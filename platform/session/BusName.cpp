#include "platform/session/BusName.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <utility>

namespace lumenfold {
namespace {

QDBusMessage askBus(const QString &method)
{
    const QString service = QStringLiteral("org.freedesktop.DBus");
    return QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/DBus"), service, method);
}

} // namespace

BusName::BusName(const QDBusConnection &bus, QString name, std::function<void(bool isOurs)> onAnswer)
    : m_bus(bus), m_name(std::move(name))
{
    constexpr uint doNotQueue = 4;
    const QDBusMessage request = askBus(QStringLiteral("RequestName")) << m_name << doNotQueue;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(request), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, told = std::move(onAnswer)] {
        constexpr uint isOwner = 1;
        watcher->deleteLater();
        told(watcher->reply().arguments().value(0).toUInt() == isOwner);
    });
}

BusName::~BusName()
{
    // The connection is the whole program's and may stay.
    if (m_bus.isConnected()) {
        m_bus.send(askBus(QStringLiteral("ReleaseName")) << m_name);
    }
}

} // namespace lumenfold
