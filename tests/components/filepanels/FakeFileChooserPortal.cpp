#include "tests/components/filepanels/FakeFileChooserPortal.h"

#include <stdexcept>

namespace lumenfold::test {
namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString connectionName = QStringLiteral("file chooser portal");

} // namespace

FakeFileChooserPortal::FakeFileChooserPortal()
    : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName))
{
    if (!m_bus.registerObject(portalPath, this, QDBusConnection::ExportAllSlots) || !m_bus.registerService(service)) {
        throw std::runtime_error("no portal on this bus");
    }
}

FakeFileChooserPortal::~FakeFileChooserPortal()
{
    m_bus.unregisterService(service);
    m_bus.unregisterObject(portalPath);
    QDBusConnection::disconnectFromBus(connectionName);
}

void FakeFileChooserPortal::OpenFile(const QString &window, const QString &windowTitle, const QVariantMap &given,
                                     const QDBusMessage &call)
{
    ++requests;
    parentWindow = window;
    title = windowTitle;
    options = given;
    call.setDelayedReply(true);
    switch (manner) {
    case Manner::isSilent:
        return;
    case Manner::refuses:
        m_bus.send(call.createErrorReply(QDBusError::UnknownMethod, QStringLiteral("no such panel")));
        return;
    case Manner::namesPathItself:
        m_requestPath = portalPath + QStringLiteral("/request/old_fashioned");
        break;
    case Manner::usual: {
        const QString sender = call.service().mid(1).replace(u'.', u'_');
        m_requestPath = portalPath + QStringLiteral("/request/") + sender + u'/' +
                        given.value(QStringLiteral("handle_token")).toString();
        break;
    }
    }
    m_bus.send(call.createReply(QVariant::fromValue(QDBusObjectPath(m_requestPath))));
}

void FakeFileChooserPortal::respond(uint response, const QStringList &uris)
{
    QDBusMessage signal = QDBusMessage::createSignal(m_requestPath, QStringLiteral("org.freedesktop.portal.Request"),
                                                     QStringLiteral("Response"));
    QVariantMap results;
    if (!uris.isEmpty()) {
        results.insert(QStringLiteral("uris"), uris);
    }
    signal << response << results;
    m_bus.send(signal);
}

} // namespace lumenfold::test
