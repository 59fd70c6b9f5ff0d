#pragma once

#include "platform/workspace/Workspace.h"

#include <QList>
#include <QStringList>

#include <functional>

namespace lumenfold::test {

/// Does nothing to the desktop and remembers what was asked of it.
class FakeWorkspace : public Workspace {
public:
    void open(const QUrl &address) override;
    [[nodiscard]] ActivationPolicy activationPolicy() const override;
    void setActivationPolicy(ActivationPolicy policy) override;
    void activateIgnoringOtherApps() override;
    void beep() override;
    void terminate() override;

    QList<QUrl> openedAddresses;
    /// Every policy that was set, in order. The program begins as a regular one.
    QList<ActivationPolicy> policies;
    int activations = 0;
    int beeps = 0;
    int terminations = 0;
    /// Told of each call as it happens ("open <address>", "setActivationPolicy 1", "activate", "beep", "terminate"),
    /// for tests of the order among several fakes.
    std::function<void(const QString &)> onCall;

private:
    void called(const QString &call) const;
};

} // namespace lumenfold::test
