#pragma once

#include "bench/whole_program/LoopRecord.h"
#include "bench/whole_program/Timing.h"

#include <QProcessEnvironment>
#include <QTemporaryFile>

namespace lumenfold::bench {

/// Finds out how long a program's main thread stays away from its event loop: computing, waiting for a processor, for a
/// reply of the X server, or for anything else. A probe in the program (LoopProbe.cpp) notes each leaving and coming
/// back, which costs it two looks at the clock. The turns of the loop count one by one, because whatever has happened
/// meanwhile is answered between them.
class MainThreadWatch {
public:
    /// Throws std::runtime_error where nothing can be written.
    MainThreadWatch();

    /// With which the program has to be started; it may be started again.
    [[nodiscard]] QProcessEnvironment environment() const;

    /// From now on. Throws std::runtime_error when the program that runs has no probe in it.
    void begin(pid_t program);
    /// Since `begin`, a stay that lasts still included.
    [[nodiscard]] Milliseconds longestAway() const;

private:
    QTemporaryFile m_file;
    LoopRecord *m_record = nullptr;
};

} // namespace lumenfold::bench
