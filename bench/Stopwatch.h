#pragma once

#include <chrono>
#include <ctime>

namespace lumenfold::bench {

/// What something took, in milliseconds: on the clock, and of this thread's own working time, which other programs do
/// not lengthen.
struct Cost {
    double elapsed = 0;
    double work = 0;
};

/// Runs from its making, on one thread.
class Stopwatch {
public:
    [[nodiscard]] Cost read() const
    {
        const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - m_start;
        return {elapsed.count(), workSoFar() - m_workBefore};
    }

private:
    [[nodiscard]] static double workSoFar()
    {
        timespec now{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
        return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
    }

    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    const double m_workBefore = workSoFar();
};

} // namespace lumenfold::bench
