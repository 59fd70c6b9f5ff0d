#pragma once

#include <QByteArray>
#include <QString>

namespace lumenfold {

/// What the process was told about the session it runs in. A plain value, so that tests can make up sessions.
struct SessionEnvironment {
    /// $DISPLAY; empty when there is no X server, neither a real one nor one inside a Wayland session.
    QByteArray x11Display;
    /// $LUMENFOLD_BACKEND: the name of the one backend that is to be used; empty to let each say whether it applies.
    QString forcedBackend;

    [[nodiscard]] static SessionEnvironment ofThisProcess();

    friend bool operator==(const SessionEnvironment &, const SessionEnvironment &) = default;
};

} // namespace lumenfold
