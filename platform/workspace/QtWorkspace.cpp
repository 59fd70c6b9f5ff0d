#include "platform/workspace/QtWorkspace.h"

#include "platform/workspace/PrivacyPanel.h"

#include <QApplication>
#include <QDebug>
#include <QProcess>
#include <QStandardPaths>
#include <QWindow>

namespace lumenfold {
namespace {

/// An address without the parts that may hold a secret.
QString loggable(const QUrl &address)
{
    return address.toDisplayString(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment);
}

bool isInstalled(const QString &program)
{
    return !QStandardPaths::findExecutable(program).isEmpty();
}

void openPrivacyPanel()
{
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts);
    const std::optional<ProgramCall> call = privacyPanelCall(desktops, isInstalled);
    if (!call || !QProcess::startDetached(call->program, call->arguments)) {
        qWarning().noquote() << "LumenFold: this desktop has no privacy settings to open";
    }
}

} // namespace

void QtWorkspace::open(const QUrl &address)
{
    if (isPrivacyPanelAddress(address)) {
        openPrivacyPanel();
        return;
    }
    // Without a scheme the opener would take it for a file, or for an option of its own.
    if (!address.isValid() || address.scheme().isEmpty()) {
        qWarning().noquote().nospace() << "LumenFold: not an address to open: " << loggable(address);
        return;
    }
    const QString opener = QStringLiteral("xdg-open");
    if (!QProcess::startDetached(opener, {QString::fromLatin1(address.toEncoded())})) {
        qWarning().noquote().nospace() << "LumenFold: cannot start " << opener << " for " << loggable(address);
    }
}

ActivationPolicy QtWorkspace::activationPolicy() const
{
    return m_policy;
}

void QtWorkspace::setActivationPolicy(ActivationPolicy policy)
{
    m_policy = policy;
}

void QtWorkspace::activateIgnoringOtherApps()
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow *window : windows) {
        const bool isPanel = window->flags().testAnyFlags(Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus);
        if (window->isVisible() && !isPanel) {
            window->raise();
            window->requestActivate();
        }
    }
}

void QtWorkspace::beep()
{
    QApplication::beep();
}

void QtWorkspace::terminate()
{
    // Not quit(): that asks every window first, and one that refuses to close would keep the program alive.
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}

} // namespace lumenfold
