#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <optional>

namespace lumenfold::test {

/// The desktop's settings portal on the session bus, by a connection of its own.
class FakeSettingsPortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    /// 1 prefers dark, 2 light, 0 neither; absent: the portal knows no such setting.
    explicit FakeSettingsPortal(std::optional<uint> colorScheme);
    ~FakeSettingsPortal() override;

    /// The user has changed it: says so to everybody.
    void change(uint colorScheme);

    /// From now on questions get no answer, not even an error.
    void fallSilent() { m_isSilent = true; }

    int reads = 0;

public Q_SLOTS:
    // NOLINTNEXTLINE(readability-identifier-naming): the name on the bus
    void Read(const QString &group, const QString &key, const QDBusMessage &call);

private:
    QDBusConnection m_bus;
    std::optional<uint> m_colorScheme;
    bool m_isSilent = false;
};

} // namespace lumenfold::test
