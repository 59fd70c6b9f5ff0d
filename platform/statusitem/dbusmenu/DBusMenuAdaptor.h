#pragma once

#include "platform/statusitem/dbusmenu/DBusMenuModel.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QList>
#include <QStringList>

namespace lumenfold {

/// com.canonical.dbusmenu: the menu of a status item, which the desktop reads and shows. The names are those on the
/// bus.
class DBusMenuAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

public:
    /// A child of the object that is put on that bus.
    DBusMenuAdaptor(QDBusConnection bus, QObject *parent);

    /// Tells the desktop that the menu is another one.
    void setMenu(Menu menu);

    [[nodiscard]] uint version() const;
    [[nodiscard]] QString textDirection() const;
    [[nodiscard]] QString status() const { return QStringLiteral("normal"); }
    [[nodiscard]] QStringList iconThemePath() const { return {}; }

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names on the bus
    uint GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames, const QDBusMessage &call,
                   lumenfold::DBusMenuLayout &layout);
    QList<lumenfold::DBusMenuItemProperties> GetGroupProperties(const QList<int> &ids,
                                                                const QStringList &propertyNames);
    QDBusVariant GetProperty(int id, const QString &name, const QDBusMessage &call);
    void Event(int id, const QString &eventId, const QDBusVariant &data, uint timestamp, const QDBusMessage &call);
    QList<int> EventGroup(const QList<lumenfold::DBusMenuEvent> &events);
    bool AboutToShow(int id, const QDBusMessage &call);
    QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors);
    // NOLINTEND(readability-identifier-naming)

Q_SIGNALS:
    // NOLINTBEGIN(readability-identifier-naming)
    void ItemsPropertiesUpdated(const QList<lumenfold::DBusMenuItemProperties> &updatedProps,
                                const QList<lumenfold::DBusMenuRemovedProperties> &removedProps);
    void LayoutUpdated(uint revision, int parent);
    void ItemActivationRequested(int id, uint timestamp);
    // NOLINTEND(readability-identifier-naming)

private:
    void clicked(int id);
    void refuse(const QDBusMessage &call, int id) const;

    QDBusConnection m_bus;
    DBusMenuModel m_model;
};

} // namespace lumenfold
