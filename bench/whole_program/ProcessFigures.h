#pragma once

#include <sys/types.h>

#include <chrono>

namespace lumenfold::bench {

/// Memory of a process in MiB, its share of what it shares with others included (PSS). Throws std::runtime_error when
/// it cannot be read.
[[nodiscard]] double proportionalMemory(pid_t process);

/// Memory of a process in MiB that it shares with nobody and that no file stands behind. Throws std::runtime_error when
/// it cannot be read.
[[nodiscard]] double privateMemory(pid_t process);

/// How many times in each second any of its threads was put on a processor during the period.
[[nodiscard]] double wakeUpsPerSecond(pid_t process, std::chrono::seconds period);

} // namespace lumenfold::bench
