#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// The structures of com.canonical.dbusmenu, as they travel.
namespace lumenfold {

/// (ia{sv})
struct DBusMenuItemProperties {
    int id = 0;
    QVariantMap properties;
};

/// (ias)
struct DBusMenuRemovedProperties {
    int id = 0;
    QStringList names;
};

/// (ia{sv}av)
struct DBusMenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<DBusMenuLayout> children;
};

/// (isvu)
struct DBusMenuEvent {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint timestamp = 0;
};

/// aas: the keys of a shortcut, one after the other.
using DBusMenuShortcut = QList<QStringList>;

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuItemProperties &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuItemProperties &item);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuRemovedProperties &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuRemovedProperties &item);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuLayout &layout);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuLayout &layout);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuEvent &event);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuEvent &event);

/// To be called before any of them is sent or received.
void registerDBusMenuTypes();

} // namespace lumenfold

Q_DECLARE_METATYPE(lumenfold::DBusMenuItemProperties)
Q_DECLARE_METATYPE(lumenfold::DBusMenuRemovedProperties)
Q_DECLARE_METATYPE(lumenfold::DBusMenuLayout)
Q_DECLARE_METATYPE(lumenfold::DBusMenuEvent)
