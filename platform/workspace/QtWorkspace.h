#pragma once

#include "platform/workspace/Workspace.h"

namespace lumenfold {

/// Opens addresses through the desktop's own opener (xdg-open), in a process that outlives this one.
class QtWorkspace : public Workspace {
public:
    void open(const QUrl &address) override;

    /// Remembered only: on these desktops an entry in the task bar comes and goes with each ordinary window, whatever
    /// the program calls itself.
    [[nodiscard]] ActivationPolicy activationPolicy() const override;
    void setActivationPolicy(ActivationPolicy policy) override;

    void activateIgnoringOtherApps() override;
    void beep() override;
    void terminate() override;

private:
    ActivationPolicy m_policy = ActivationPolicy::regular;
};

} // namespace lumenfold
