#pragma once

#include "cards/FullSizePreview.h"
#include "cards/face/EscapeMonitor.h"

#include <memory>

namespace lumenfold {

class Appearance;
class Panel;
class PanelFactory;
class Screens;

/// Shows one picture large, in a window of its own in the middle of the main screen, until its close button or Escape
/// is pressed. At most one at a time. Main thread.
class ImagePreviewWindowController : public FullSizePreview {
public:
    /// Everything must outlive the controller.
    struct Collaborators {
        PanelFactory &panels;
        const Appearance &appearance;
        const Screens &screens;
        EscapeMonitor::Collaborators keys;
    };

    explicit ImagePreviewWindowController(const Collaborators &collaborators);
    ~ImagePreviewWindowController() override;

    void present(const Image &image) override;
    /// Nothing when no picture is shown.
    void close();

private:
    const Collaborators m_with;
    /// Null while no picture is shown.
    std::unique_ptr<Panel> m_window;
    std::unique_ptr<EscapeMonitor> m_escapeMonitor;
    /// For what is called later and must not find a controller that is gone.
    const std::shared_ptr<ImagePreviewWindowController *> m_self;
};

} // namespace lumenfold
