#include "platform/statusitem/dbusmenu/DBusMenuAdaptor.h"

#include <QGuiApplication>

#include <utility>

namespace lumenfold {
namespace {

constexpr uint protocolVersion = 3;
const QString clickedEvent = QStringLiteral("clicked");

} // namespace

DBusMenuAdaptor::DBusMenuAdaptor(QDBusConnection bus, QObject *parent)
    : QDBusAbstractAdaptor(parent), m_bus(std::move(bus))
{
    registerDBusMenuTypes();
}

void DBusMenuAdaptor::setMenu(Menu menu)
{
    m_model.setMenu(std::move(menu));
    Q_EMIT LayoutUpdated(m_model.revision(), DBusMenuModel::root);
}

uint DBusMenuAdaptor::version() const
{
    return protocolVersion;
}

QString DBusMenuAdaptor::textDirection() const
{
    return QGuiApplication::isRightToLeft() ? QStringLiteral("rtl") : QStringLiteral("ltr");
}

uint DBusMenuAdaptor::GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                                const QDBusMessage &call, DBusMenuLayout &layout)
{
    if (auto found = m_model.layout(parentId, recursionDepth, propertyNames)) {
        layout = std::move(*found);
    } else {
        refuse(call, parentId);
    }
    return m_model.revision();
}

QList<DBusMenuItemProperties> DBusMenuAdaptor::GetGroupProperties(const QList<int> &ids,
                                                                  const QStringList &propertyNames)
{
    QList<DBusMenuItemProperties> all;
    const QList<int> known = m_model.itemIds();
    for (const int id : known) {
        if (ids.isEmpty() || ids.contains(id)) {
            all.append({.id = id, .properties = m_model.properties(id, propertyNames).value_or(QVariantMap())});
        }
    }
    return all;
}

QDBusVariant DBusMenuAdaptor::GetProperty(int id, const QString &name, const QDBusMessage &call)
{
    const auto properties = m_model.properties(id, {name});
    if (!properties || !properties->contains(name)) {
        refuse(call, id);
        return QDBusVariant(QString());
    }
    return QDBusVariant(properties->value(name));
}

void DBusMenuAdaptor::Event(int id, const QString &eventId, const QDBusVariant &, uint, const QDBusMessage &call)
{
    if (!m_model.contains(id)) {
        refuse(call, id);
    } else if (eventId == clickedEvent) {
        clicked(id);
    }
}

QList<int> DBusMenuAdaptor::EventGroup(const QList<DBusMenuEvent> &events)
{
    QList<int> unknown;
    for (const DBusMenuEvent &event : events) {
        if (!m_model.contains(event.id)) {
            unknown.append(event.id);
        } else if (event.name == clickedEvent) {
            clicked(event.id);
        }
    }
    return unknown;
}

bool DBusMenuAdaptor::AboutToShow(int id, const QDBusMessage &call)
{
    if (!m_model.contains(id)) {
        refuse(call, id);
    }
    // The menu is always as it should be.
    return false;
}

QList<int> DBusMenuAdaptor::AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors)
{
    for (const int id : ids) {
        if (!m_model.contains(id)) {
            idErrors.append(id);
        }
    }
    return {};
}

void DBusMenuAdaptor::clicked(int id)
{
    // After the answer, which the desktop may be waiting for.
    if (std::function<void()> action = m_model.actionOf(id)) {
        QMetaObject::invokeMethod(this, std::move(action), Qt::QueuedConnection);
    }
}

void DBusMenuAdaptor::refuse(const QDBusMessage &call, int id) const
{
    call.setDelayedReply(true);
    const QString why = QStringLiteral("The menu has no item or no such property of it under number %1").arg(id);
    m_bus.send(call.createErrorReply(QDBusError::InvalidArgs, why));
}

} // namespace lumenfold
