#include "cards/ScreenDrag.h"

#include "platform/screens/Screens.h"

namespace lumenfold {

void ScreenDrag::begin(QPointF place)
{
    m_startMouse = m_screens.fromToolkit(place);
}

std::optional<Size> ScreenDrag::translationTo(QPointF place) const
{
    if (!m_startMouse) {
        return std::nullopt;
    }
    const Point now = m_screens.fromToolkit(place);
    return Size{now.x - m_startMouse->x, now.y - m_startMouse->y};
}

} // namespace lumenfold
