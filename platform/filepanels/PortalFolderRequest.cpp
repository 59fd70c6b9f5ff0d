#include "platform/filepanels/PortalFolderRequest.h"

#include "platform/session/DesktopPortal.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <QUuid>
#include <QWidget>

namespace lumenfold {
namespace {

const QString fileChooser = QStringLiteral("org.freedesktop.portal.FileChooser");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");

QString windowIdentifier(const QWidget *window)
{
    return window != nullptr ? QStringLiteral("x11:") + QString::number(window->window()->winId(), 16) : QString();
}

/// Nothing for what is no folder of this machine: older portals know no panel for folders and have a file chosen.
std::optional<QString> folderIn(const QVariantMap &results)
{
    const QStringList addresses = results.value(QStringLiteral("uris")).toStringList();
    if (addresses.size() != 1) {
        return std::nullopt;
    }
    const QString path = QUrl::fromEncoded(addresses.constFirst().toUtf8()).toLocalFile();
    return QFileInfo(path).isDir() ? std::optional(path) : std::nullopt;
}

} // namespace

PortalFolderRequest::PortalFolderRequest(const QDBusConnection &bus) : m_bus(bus) {}

PortalFolderRequest::~PortalFolderRequest() = default;

void PortalFolderRequest::send(const OpenPanel::Request &request, std::chrono::milliseconds patience)
{
    // Nobody else can guess it, so the answer comes from the portal.
    const QString token = QStringLiteral("lumenfold_") + QUuid::createUuid().toString(QUuid::Id128);
    const QString sender = m_bus.baseService().mid(1).replace(u'.', u'_');
    listenTo(portalPath + QStringLiteral("/request/") + sender + u'/' + token);

    auto *watcher = new QDBusServiceWatcher(portalService, m_bus, QDBusServiceWatcher::WatchForUnregistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { end(Outcome::answered); });

    QDBusMessage call =
        QDBusMessage::createMethodCall(portalService, portalPath, fileChooser, QStringLiteral("OpenFile"));
    const QByteArray folder = QFile::encodeName(request.directory);
    call << windowIdentifier(request.window) << request.title
         << QVariantMap{{QStringLiteral("handle_token"), token},
                        {QStringLiteral("accept_label"), request.prompt},
                        {QStringLiteral("modal"), true},
                        {QStringLiteral("multiple"), false},
                        {QStringLiteral("directory"), true},
                        // With the zero at its end, as the portal wants paths.
                        {QStringLiteral("current_folder"), QByteArray(folder.constData(), folder.size() + 1)}};
    auto *answer = new QDBusPendingCallWatcher(m_bus.asyncCall(call, static_cast<int>(patience.count())), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] { taken(*answer); });
}

void PortalFolderRequest::listenTo(const QString &requestPath)
{
    m_path = requestPath;
    // Without the service's name, for which the toolkit would ask the bus and wait.
    m_bus.connect(QString(), requestPath, requestInterface, QStringLiteral("Response"), this,
                  SLOT(respond(uint, QVariantMap)));
}

void PortalFolderRequest::taken(QDBusPendingCallWatcher &answer)
{
    const QDBusPendingReply<QDBusObjectPath> reply = answer;
    if (reply.isError()) {
        // A panel that would come up all the same is called off.
        m_bus.send(QDBusMessage::createMethodCall(portalService, m_path, requestInterface, QStringLiteral("Close")));
        end(Outcome::unavailable);
    } else if (reply.value().path() != m_path) {
        listenTo(reply.value().path());
    }
}

void PortalFolderRequest::respond(uint response, const QVariantMap &results)
{
    constexpr uint done = 0;
    if (response == done) {
        m_directory = folderIn(results);
    }
    end(Outcome::answered);
}

void PortalFolderRequest::end(Outcome outcome)
{
    if (!m_hasEnded) {
        m_hasEnded = true;
        m_outcome = outcome;
        Q_EMIT ended();
    }
}

} // namespace lumenfold
