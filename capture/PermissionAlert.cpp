#include "capture/PermissionAlert.h"

#include "platform/alerts/Alerts.h"
#include "platform/workspace/Workspace.h"

#include <QCoreApplication>
#include <QUrl>

namespace lumenfold {
namespace {

QString translated(const char *text)
{
    return QCoreApplication::translate("PermissionAlert", text);
}

Alert permissionAlert()
{
    return {.messageText = translated(QT_TRANSLATE_NOOP("PermissionAlert", "Screen Recording permission required")),
            .informativeText = translated(QT_TRANSLATE_NOOP(
                "PermissionAlert", "LumenFold needs Screen Recording permission to capture your screen.\n\nOpen System "
                                   "Settings \u2192 Privacy & Security \u2192 Screen Recording and enable LumenFold, "
                                   "then restart the app.")),
            .buttons = {translated(QT_TRANSLATE_NOOP("PermissionAlert", "Open System Settings")),
                        translated(QT_TRANSLATE_NOOP("PermissionAlert", "Later"))}};
}

} // namespace

QCoro::Task<> showPermissionAlert(Alerts &alerts, Workspace &workspace)
{
    workspace.activateIgnoringOtherApps();
    Alert alert = permissionAlert();
    const int answer = co_await alerts.runModal(std::move(alert));
    if (answer == alertFirstButtonReturn) {
        workspace.open(
            QUrl(QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture")));
    }
}

} // namespace lumenfold
