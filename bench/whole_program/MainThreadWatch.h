#pragma once

#include "bench/whole_program/Timing.h"

#include <sys/types.h>

#include <atomic>
#include <thread>

namespace lumenfold::bench {

/// Finds out from outside how long a program's main thread stays away from its event loop.
///
/// A thread of ours reads several thousand times a second, in /proc, what the main thread is doing. Asleep in a poll on
/// two descriptors or more it is in its event loop, ready to answer. Everything else counts as away: computing, waiting
/// for a processor, any other system call, and a poll on a single descriptor, which is how xcb waits for a reply. A
/// visit to the event loop that falls between two looks is missed, so the figure is never too small by more than the
/// time between two looks. Needs the right to trace the program.
class MainThreadWatch {
public:
    explicit MainThreadWatch(pid_t program);
    /// Stops the watch.
    ~MainThreadWatch();
    MainThreadWatch(const MainThreadWatch &) = delete;
    MainThreadWatch &operator=(const MainThreadWatch &) = delete;

    /// Ends the watch and tells the longest stay away.
    [[nodiscard]] Milliseconds longestAway();
    /// The longest time between two looks: what the figure cannot tell apart.
    [[nodiscard]] Milliseconds resolution() const { return m_longestStep; }

private:
    void watch();

    int m_descriptor;
    std::atomic<bool> m_stop = false;
    Milliseconds m_longest{0};
    Milliseconds m_longestStep{0};
    std::thread m_thread;
};

} // namespace lumenfold::bench
