#pragma once

#include <QUrl>

namespace lumenfold {

/// How the program stands on the desktop (macOS numbering).
enum class ActivationPolicy {
    /// An entry in the task bar while a window of it is open.
    regular = 0,
    /// Lives in the status area only.
    accessory = 1,
};

/// The desktop around the program. Main thread.
class Workspace {
public:
    Workspace() = default;
    Workspace(const Workspace &) = delete;
    Workspace &operator=(const Workspace &) = delete;
    virtual ~Workspace() = default;

    /// Hands the address to whoever opens such addresses; returns at once. The two system-settings addresses
    /// ("x-apple.systempreferences:…") open the desktop's own privacy panel where there is one. Failures are logged.
    virtual void open(const QUrl &address) = 0;

    [[nodiscard]] virtual ActivationPolicy activationPolicy() const = 0;
    virtual void setActivationPolicy(ActivationPolicy policy) = 0;

    /// Brings the program's windows to the front, whatever has the focus now.
    virtual void activateIgnoringOtherApps() = 0;

    virtual void beep() = 0;

    /// Ends the program in the orderly way, in a later turn of the event loop.
    virtual void terminate() = 0;
};

} // namespace lumenfold
