#pragma once

#include "platform/panels/Panel.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace lumenfold {

class KeyEventTapService;
class PanelStage;
class X11Screens;

namespace x11 {
class X11Connection;
}

/// Makes panels on X11. Needs a QApplication on the same display.
class X11PanelFactory : public PanelFactory {
public:
    struct Surroundings {
        /// Whence a key panel gets its keys.
        KeyEventTapService &taps;
        const X11Screens &screens;
        /// Told the native window of every panel that has been hidden with nothing of it left to fade out.
        std::function<void(std::uint32_t window)> onLeftWithoutTrace = [](std::uint32_t) {};
    };

    /// The connection is for the panels alone. What is referred to outlives the factory.
    X11PanelFactory(std::unique_ptr<x11::X11Connection> connection, Surroundings surroundings);
    ~X11PanelFactory() override;

    [[nodiscard]] std::unique_ptr<Panel> makePanel(const PanelOptions &options, const Rect &frame) override;
    [[nodiscard]] bool isTranslucencyAvailable() const override;

private:
    std::unique_ptr<PanelStage> m_stage;
};

} // namespace lumenfold
