#pragma once

#include <QString>

/// Where the desktop's portals are on the session bus.
namespace lumenfold {

inline const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
inline const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");

} // namespace lumenfold
