#pragma once

#include "platform/remoteactions/RemoteActions.h"

#include <QStringList>

#include <functional>
#include <utility>

namespace lumenfold::test {

/// A desktop that asks for what a test says.
class FakeRemoteActions : public RemoteActions {
public:
    void publish(RemoteCommands commands) override
    {
        m_commands = std::move(commands);
        if (onPublish) {
            onPublish();
        }
    }

    [[nodiscard]] QStringList names() const { return m_commands.actions.keys(); }
    void activate() const { m_commands.activate(); }
    /// One of `names`.
    void perform(const QString &name) const { m_commands.actions.value(name)(); }

    /// Told of the publishing, for tests of the order among several fakes.
    std::function<void()> onPublish;

private:
    RemoteCommands m_commands;
};

} // namespace lumenfold::test
