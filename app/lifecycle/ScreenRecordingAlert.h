#pragma once

#include "platform/alerts/Alerts.h"

#include <QString>

namespace lumenfold {

/// What the user calls the program: its display name, else its plain name, else "LumenFold".
[[nodiscard]] QString productName(const QString &displayName, const QString &plainName);

/// What the user is told at start-up when the program may not look at the screen. The first button opens the system's
/// settings.
[[nodiscard]] Alert screenRecordingAlert(const QString &productName);

} // namespace lumenfold
