#pragma once

#include "platform/filepanels/OpenPanel.h"

#include <chrono>

namespace lumenfold {

/// The desktop's own panel, by way of its portal: GNOME's on GNOME, KDE's on KDE. Where there is no portal, or it does
/// not take the request, another panel is shown in its place. Asks the session bus without waiting for it.
class PortalOpenPanel : public OpenPanel {
public:
    /// `fallback` must outlive this object. `patience` is how long the portal may take to take a request; the user may
    /// take any time.
    explicit PortalOpenPanel(OpenPanel &fallback, std::chrono::milliseconds patience = std::chrono::seconds{3});

    [[nodiscard]] QCoro::Task<std::optional<QString>> chooseDirectory(Request request) override;

private:
    OpenPanel &m_fallback;
    const std::chrono::milliseconds m_patience;
};

} // namespace lumenfold
