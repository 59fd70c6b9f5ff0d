#include "tests/support/fakes/FakeScreens.h"

#include <utility>

namespace lumenfold::test {

FakeScreens::FakeScreens()
    : m_screens{{.displayID = 1, .frame = {0, 0, 1440, 900}, .visibleFrame = {0, 0, 1440, 875}}}, m_pointer{720, 450}
{
}

std::vector<Screen> FakeScreens::all() const
{
    return m_screens;
}

Point FakeScreens::pointerLocation() const
{
    return m_pointer;
}

void FakeScreens::setScreens(std::vector<Screen> screens)
{
    m_screens = std::move(screens);
    Q_EMIT changed();
}

void FakeScreens::setPointerLocation(Point location)
{
    m_pointer = location;
}

Screen FakeScreens::plainScreen(DisplayID displayID, const Rect &frame, double backingScale)
{
    return {.displayID = displayID, .frame = frame, .visibleFrame = frame, .backingScale = backingScale};
}

} // namespace lumenfold::test
