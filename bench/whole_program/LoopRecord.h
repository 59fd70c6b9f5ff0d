#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstdint>

namespace lumenfold::bench {

/// What the probe in the measured program writes and the benchmark reads, in a file that both have mapped. A file of
/// zeros is the beginning of it. Times are nanoseconds of the monotonic clock.
struct LoopRecord {
    static constexpr const char *fileVariable = "LUMENFOLD_LOOP_RECORD";

    /// The process that writes; 0 until the probe is there.
    std::atomic<pid_t> program;
    /// Since when the main thread has been away from its event loop; 0 while it waits in it.
    std::atomic<std::int64_t> awaySince;
    /// The longest stay away that has ended since the benchmark set this to 0.
    std::atomic<std::int64_t> longestAway;
};
static_assert(std::atomic<std::int64_t>::is_always_lock_free && std::atomic<pid_t>::is_always_lock_free);

} // namespace lumenfold::bench
