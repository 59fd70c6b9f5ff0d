#include "tests/components/appearance/FakeSettingsPortal.h"

#include <QDBusVariant>

#include <stdexcept>

namespace lumenfold::test {
namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
const QString group = QStringLiteral("org.freedesktop.appearance");
const QString key = QStringLiteral("color-scheme");
const QString connectionName = QStringLiteral("settings portal");

} // namespace

FakeSettingsPortal::FakeSettingsPortal(std::optional<uint> colorScheme)
    : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName)), m_colorScheme(colorScheme)
{
    if (!m_bus.registerObject(path, this, QDBusConnection::ExportAllSlots) || !m_bus.registerService(service)) {
        throw std::runtime_error("no settings portal on this bus");
    }
}

FakeSettingsPortal::~FakeSettingsPortal()
{
    m_bus.unregisterService(service);
    QDBusConnection::disconnectFromBus(connectionName);
}

void FakeSettingsPortal::Read(const QString &askedGroup, const QString &askedKey, const QDBusMessage &call)
{
    ++reads;
    if (m_isSilent) {
        call.setDelayedReply(true);
        return;
    }
    if (!m_colorScheme || askedGroup != group || askedKey != key) {
        m_bus.send(call.createErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"),
                                         QStringLiteral("Requested setting not found")));
        return;
    }
    // Wrapped twice, as this call does it.
    const QDBusVariant value(QVariant::fromValue(QDBusVariant(*m_colorScheme)));
    m_bus.send(call.createReply(QVariant::fromValue(value)));
}

void FakeSettingsPortal::change(uint colorScheme)
{
    m_colorScheme = colorScheme;
    QDBusMessage signal = QDBusMessage::createSignal(path, settings, QStringLiteral("SettingChanged"));
    signal << group << key << QVariant::fromValue(QDBusVariant(colorScheme));
    m_bus.send(signal);
}

} // namespace lumenfold::test
