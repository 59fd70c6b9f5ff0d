#pragma once

#include "platform/screens/Screens.h"

namespace lumenfold::test {

/// Screens as a test plugs them in. Begins with one of 1440 x 900 points, of which a bar at the top takes 25, so that
/// 875 are visible; the pointer stands at its centre.
class FakeScreens : public Screens {
    Q_OBJECT

public:
    FakeScreens();

    [[nodiscard]] std::vector<Screen> all() const override;
    [[nodiscard]] Point pointerLocation() const override;

    /// In the system's order, the main screen first; may be empty. Says that the screens changed.
    void setScreens(std::vector<Screen> screens);
    void setPointerLocation(Point location);

    /// A screen without panels: all of its frame is visible.
    [[nodiscard]] static Screen plainScreen(DisplayID displayID, const Rect &frame, double backingScale = 1);

private:
    std::vector<Screen> m_screens;
    Point m_pointer;
};

} // namespace lumenfold::test
