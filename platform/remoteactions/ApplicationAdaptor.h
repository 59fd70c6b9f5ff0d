#pragma once

#include "platform/remoteactions/RemoteActions.h"

#include <QDBusAbstractAdaptor>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

namespace lumenfold {

/// org.freedesktop.Application. The names are those on the bus; what is asked for comes from anybody in the session.
class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// A child of the object that is put on the bus.
    ApplicationAdaptor(RemoteCommands commands, QObject *parent);

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names on the bus
    void Activate(const QVariantMap &platformData);
    void Open(const QStringList &addresses, const QVariantMap &platformData);
    void ActivateAction(const QString &name, const QVariantList &parameters, const QVariantMap &platformData);
    // NOLINTEND(readability-identifier-naming)

private:
    const RemoteCommands m_commands;
};

} // namespace lumenfold
