#include "cards/ColumnTracking.h"

namespace lumenfold {

ColumnTracking::ColumnTracking(EventMonitors &monitors) : m_monitors(monitors) {}

ColumnTracking::~ColumnTracking() = default;

void ColumnTracking::start(const Handler &handler)
{
    if (!m_installed.empty()) {
        return;
    }
    constexpr std::uint32_t mask = eventMask(PointerEventType::mouseMoved) | eventMask(PointerEventType::scrollWheel);
    m_installed.push_back(m_monitors.addGlobalMonitor(mask, handler));
    m_installed.push_back(m_monitors.addLocalMonitor(mask, handler));
}

void ColumnTracking::stop()
{
    m_installed.clear();
}

} // namespace lumenfold
