#pragma once

#include "settings/SettingsView.h"
#include "settings/SettingsWindow.h"

#include <memory>

class QDialog;

namespace lumenfold {

class Workspace;

/// The one settings window. It is made when it is first shown, and kept: closing only hides it.
class SettingsWindowController : public SettingsWindow {
public:
    /// Everything must outlive the controller.
    struct Collaborators {
        SettingsView::Collaborators view;
        Workspace &workspace;
    };

    explicit SettingsWindowController(const Collaborators &collaborators);
    ~SettingsWindowController() override;

    /// The one of the program, which the composition root made and named with `setShared`.
    [[nodiscard]] static SettingsWindowController &shared();
    /// Not owned; null when it goes away.
    static void setShared(SettingsWindowController *controller);

    void present() override;

private:
    void makeWindow();

    const Collaborators m_with;
    std::unique_ptr<QDialog> window;
};

} // namespace lumenfold
