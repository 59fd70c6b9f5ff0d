#pragma once

#include <chrono>
#include <optional>

/// When the program looks for updates by itself.
namespace lumenfold::updateSchedule {

/// From one look to the next, at least.
inline constexpr std::chrono::hours interval{24};
/// Up to so much later, so that not all programs ask in one minute of the day.
inline constexpr std::chrono::hours intervalJitter{2};
/// After the start of the program, which has better things to do then, at least so long, and up to so much later.
inline constexpr std::chrono::minutes startDelay{5};
inline constexpr std::chrono::minutes startJitter{15};

/// How long to wait. `last`: when somebody last looked, whoever it was; one that is still to come was written by a
/// clock that went wrong and counts as none. `chance`: at least 0 and less than 1.
[[nodiscard]] std::chrono::milliseconds delayUntilNext(std::chrono::sys_seconds now,
                                                       std::optional<std::chrono::sys_seconds> last, double chance);

} // namespace lumenfold::updateSchedule
