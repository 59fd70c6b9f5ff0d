#pragma once

#include <cstdint>

namespace lumenfold {

/// The X server's clock as seconds that never go back. Its own count of milliseconds starts again at 0 every 49.7 days.
class ServerClock {
public:
    [[nodiscard]] double seconds(std::uint32_t serverTime);

private:
    std::uint64_t m_milliseconds = 0;
};

} // namespace lumenfold
