#pragma once

#include "tests/support/desktop/CardFrames.h"
#include "tests/support/desktop/Desktop.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace lumenfold::test {

/// A kind of desktop that people have; the parameter of tests that must hold on all of them.
struct DesktopSetting {
    const char *name;
    WindowManagerKind windowManager = WindowManagerKind::openbox;
    CompositorKind compositor = CompositorKind::none;
    int scale = 1;

    /// With a screen of `cardFriendlyScreen` points.
    [[nodiscard]] DesktopOptions options() const
    {
        return {.size = cardFriendlyScreen * scale,
                .scale = scale,
                .windowManager = windowManager,
                .compositor = compositor};
    }

    [[nodiscard]] static std::string nameOf(const ::testing::TestParamInfo<DesktopSetting> &test)
    {
        return test.param.name;
    }

    friend void PrintTo(const DesktopSetting &setting, std::ostream *stream) { *stream << setting.name; }
};

} // namespace lumenfold::test
