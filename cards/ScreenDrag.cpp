#include "cards/ScreenDrag.h"

#include "platform/screens/Screens.h"

namespace lumenfold {

void ScreenDrag::begin()
{
    m_startMouse = m_screens.pointerLocation();
}

std::optional<Size> ScreenDrag::translation() const
{
    if (!m_startMouse) {
        return std::nullopt;
    }
    const Point now = m_screens.pointerLocation();
    return Size{now.x - m_startMouse->x, now.y - m_startMouse->y};
}

} // namespace lumenfold
