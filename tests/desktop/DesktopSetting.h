#pragma once

#include "tests/support/desktop/CardFrames.h"
#include "tests/support/desktop/DesktopTest.h"

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

/// The two that are least alike: no compositing manager, and windows that blend at two pixels per point.
[[nodiscard]] inline auto plainAndScaled()
{
    return ::testing::Values(DesktopSetting{"Openbox"}, DesktopSetting{"OpenboxPicomScale2", WindowManagerKind::openbox,
                                                                       CompositorKind::plain, 2});
}

/// A test on such desktops.
class DesktopSettingTest : public DesktopTest, public ::testing::WithParamInterface<DesktopSetting> {
protected:
    [[nodiscard]] int pixels(int points) const { return points * GetParam().scale; }
    [[nodiscard]] QRect pixels(QRect points) const
    {
        return {points.topLeft() * GetParam().scale, points.size() * GetParam().scale};
    }
};

} // namespace lumenfold::test
