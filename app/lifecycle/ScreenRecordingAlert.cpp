#include "app/lifecycle/ScreenRecordingAlert.h"

namespace lumenfold {

QString productName(const QString &displayName, const QString &plainName)
{
    if (!displayName.isEmpty()) {
        return displayName;
    }
    return plainName.isEmpty() ? QStringLiteral("LumenFold") : plainName;
}

Alert screenRecordingAlert(const QString &productName)
{
    return {
        .messageText = QStringLiteral("Enable Screen Recording for ") + productName,
        // Joined and not filled in with arg(), because a name may hold anything.
        .informativeText = productName +
                           QStringLiteral(" needs Screen Recording permission to capture your screen.\n\n"
                                          "In System Settings → Screen Recording, turn on ") +
                           productName + QStringLiteral(". macOS will then offer to quit and reopen ") + productName +
                           QStringLiteral(" so the permission takes effect."),
        .buttons = {QStringLiteral("Open System Settings"), QStringLiteral("Later")},
    };
}

} // namespace lumenfold
