#include "platform/events/ServerClock.h"

namespace lumenfold {

double ServerClock::seconds(std::uint32_t serverTime)
{
    constexpr double millisecondsPerSecond = 1000;
    const auto ahead = static_cast<std::int32_t>(serverTime - static_cast<std::uint32_t>(m_milliseconds));
    if (m_milliseconds == 0) {
        m_milliseconds = serverTime;
    } else if (ahead > 0) {
        m_milliseconds += static_cast<std::uint32_t>(ahead);
    }
    return static_cast<double>(m_milliseconds) / millisecondsPerSecond;
}

} // namespace lumenfold
