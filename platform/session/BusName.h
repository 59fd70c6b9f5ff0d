#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <functional>

namespace lumenfold {

/// A name under which the program can be reached on a bus, for as long as this lives. Asked for without waiting, which
/// the toolkit's own call does.
class BusName : public QObject {
    Q_OBJECT

public:
    /// `onAnswer` is told once whether the bus has given it; a name that somebody has is not waited for. Not called
    /// once this is gone.
    BusName(const QDBusConnection &bus, QString name, std::function<void(bool isOurs)> onAnswer);
    ~BusName() override;

private:
    QDBusConnection m_bus;
    const QString m_name;
};

} // namespace lumenfold
