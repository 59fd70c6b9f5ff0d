#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <QVariantMap>

namespace lumenfold::test {

/// The desktop's portal for panels on the session bus, by a connection of its own.
class FakeFileChooserPortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.FileChooser")

public:
    FakeFileChooserPortal();
    ~FakeFileChooserPortal() override;

    /// The user's answer to the panel that is up: 0 chosen, 1 cancelled.
    void respond(uint response, const QStringList &uris = {});

    /// From now on requests are refused, or get no answer, or stand under a path of the portal's own.
    enum class Manner { usual, refuses, isSilent, namesPathItself };
    Manner manner = Manner::usual;

    int requests = 0;
    QString parentWindow;
    QString title;
    QVariantMap options;

public Q_SLOTS:
    // NOLINTNEXTLINE(readability-identifier-naming): the name on the bus
    void OpenFile(const QString &window, const QString &windowTitle, const QVariantMap &given,
                  const QDBusMessage &call);

private:
    QDBusConnection m_bus;
    QString m_requestPath;
};

} // namespace lumenfold::test
