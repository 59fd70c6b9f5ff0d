#pragma once

#include <QMap>
#include <QString>

#include <functional>

namespace lumenfold {

/// What others may ask the running program to do.
struct RemoteCommands {
    /// Somebody launched the program once more.
    std::function<void()> activate;
    /// By name. They take no parameters.
    QMap<QString, std::function<void()>> actions;
};

/// The desktop's own way into the program: key bindings, launchers and scripts call its actions by name. Whatever else
/// they ask for is ignored with a line in the log. Main thread.
class RemoteActions {
public:
    RemoteActions() = default;
    RemoteActions(const RemoteActions &) = delete;
    RemoteActions &operator=(const RemoteActions &) = delete;
    virtual ~RemoteActions() = default;

    /// From now on the desktop reaches these, as soon as there is a way. Returns at once.
    virtual void publish(RemoteCommands commands) = 0;
};

} // namespace lumenfold
