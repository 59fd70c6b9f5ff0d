#include "platform/statusitem/notifier/StatusNotifier.h"

#include "platform/statusitem/dbusmenu/DBusMenuAdaptor.h"

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <utility>

namespace lumenfold {
namespace {

const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString menuPath = QStringLiteral("/MenuBar");

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
const QString watcherInterface = watcherService;

const QString busService = QStringLiteral("org.freedesktop.DBus");
const QString busPath = QStringLiteral("/org/freedesktop/DBus");

/// Not started by being asked: a desktop that wants one starts it itself.
QDBusMessage call(const QString &service, const QString &path, const QString &interface, const QString &method)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setAutoStartService(false);
    return message;
}

} // namespace

StatusNotifier::StatusNotifier(const QDBusConnection &bus)
    : m_bus(bus)
    , m_item(new StatusNotifierItemAdaptor(menuPath, &m_itemObject))
    , m_menu(new DBusMenuAdaptor(bus, &m_menuObject))
    , m_name(QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid()))
{
    m_item->onMenuRequested = [this](QPoint place) {
        if (onMenuRequested) {
            onMenuRequested(place);
        }
    };
    if (!m_bus.isConnected() || !m_bus.registerObject(itemPath, &m_itemObject) ||
        !m_bus.registerObject(menuPath, &m_menuObject)) {
        m_standing = Standing::notShown;
        return;
    }
    watch();
    requestName();
}

StatusNotifier::~StatusNotifier()
{
    m_bus.unregisterObject(itemPath);
    m_bus.unregisterObject(menuPath);
    // That the item is gone, the panel learns from its name.
}

void StatusNotifier::setPicture(NotifierPicture picture)
{
    m_item->setPicture(std::move(picture));
}

void StatusNotifier::setMenu(Menu menu)
{
    m_menu->setMenu(std::move(menu));
}

void StatusNotifier::watch()
{
    // Senders are not named: for a name, the toolkit would ask the bus who that is and wait for the answer. So anybody
    // can send these signals, and what counts is what the watcher then answers.
    m_bus.connect(QString(), busPath, busService, QStringLiteral("NameOwnerChanged"), {watcherService}, QString(), this,
                  SLOT(ownerChanged(QString, QString, QString)));
    for (const char *signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        m_bus.connect(QString(), watcherPath, watcherInterface, QString::fromLatin1(signal), this, SLOT(askForHost()));
    }
    m_bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                  QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this, SLOT(busLost()));
}

void StatusNotifier::requestName()
{
    m_ownName = std::make_unique<BusName>(m_bus, m_name, [this](bool isOurs) {
        if (!isOurs) {
            // A sandbox may not allow names of this kind; every watcher takes the connection's own.
            m_name = m_bus.baseService();
        }
        registerItem();
    });
}

void StatusNotifier::registerItem()
{
    QDBusMessage registration =
        call(watcherService, watcherPath, watcherInterface, QStringLiteral("RegisterStatusNotifierItem"));
    registration << m_name;
    ask(registration, [this, number = m_watcherNumber](const QDBusMessage &answer) {
        if (number != m_watcherNumber) {
            return;
        }
        m_isRegistered = answer.type() == QDBusMessage::ReplyMessage;
        if (m_isRegistered) {
            askForHost();
        } else {
            setStanding(Standing::notShown);
        }
    });
}

void StatusNotifier::askForHost()
{
    if (!m_isRegistered) {
        return;
    }
    QDBusMessage question =
        call(watcherService, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << watcherInterface << QStringLiteral("IsStatusNotifierHostRegistered");
    ask(question, [this, number = m_watcherNumber](const QDBusMessage &answer) {
        if (number != m_watcherNumber) {
            return;
        }
        const QVariant value = answer.arguments().value(0);
        const bool hasHost = value.canConvert<QDBusVariant>() && value.value<QDBusVariant>().variant().toBool();
        setStanding(hasHost ? Standing::shown : Standing::notShown);
    });
}

void StatusNotifier::ownerChanged(const QString &name, const QString &, const QString &now)
{
    if (name != watcherService) {
        return;
    }
    ++m_watcherNumber;
    m_isRegistered = false;
    if (now.isEmpty()) {
        setStanding(Standing::notShown);
    } else {
        registerItem();
    }
}

void StatusNotifier::busLost()
{
    ++m_watcherNumber;
    m_isRegistered = false;
    setStanding(Standing::notShown);
}

void StatusNotifier::setStanding(Standing standing)
{
    if (std::exchange(m_standing, standing) != standing && onStandingChanged) {
        onStandingChanged();
    }
}

void StatusNotifier::ask(const QDBusMessage &question, const std::function<void(const QDBusMessage &answer)> &onAnswer)
{
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, onAnswer] {
        watcher->deleteLater();
        onAnswer(watcher->reply());
    });
}

} // namespace lumenfold
