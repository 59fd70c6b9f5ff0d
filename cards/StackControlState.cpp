#include "cards/StackControlState.h"

namespace lumenfold {

void StackControlState::setCollapsed(bool collapsed)
{
    if (collapsed != m_isCollapsed) {
        m_isCollapsed = collapsed;
        Q_EMIT isCollapsedChanged(collapsed);
    }
}

void StackControlState::pressClear()
{
    // The answer may replace the callback.
    const auto callback = onClearAll;
    callback();
}

} // namespace lumenfold
