#include "bench/whole_program/MainThreadWatch.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <stdexcept>
#include <string>

namespace lumenfold::bench {
namespace {

constexpr std::chrono::microseconds betweenLooks{150};
/// The event loop waits for its own wake-up and for the X server at least.
constexpr unsigned long descriptorsOfAnEventLoop = 2;

/// The kernel's line is the number of the system call and its arguments, or "running".
bool isInEventLoop(int descriptor)
{
    std::array<char, 256> line{};
    if (::pread(descriptor, line.data(), line.size() - 1, 0) <= 0) {
        return false;
    }
    long call = -1;
    unsigned long first = 0;
    unsigned long second = 0;
    if (std::sscanf(line.data(), "%ld %lx %lx", &call, &first, &second) != 3) {
        return false;
    }
    bool polls = call == SYS_ppoll;
#ifdef SYS_poll
    polls = polls || call == SYS_poll;
#endif
    return polls && second >= descriptorsOfAnEventLoop;
}

} // namespace

MainThreadWatch::MainThreadWatch(pid_t program)
    : m_descriptor(
          ::open(("/proc/" + std::to_string(program) + "/task/" + std::to_string(program) + "/syscall").c_str(),
                 O_RDONLY | O_CLOEXEC))
{
    std::array<char, 16> probe{};
    if (m_descriptor < 0 || ::pread(m_descriptor, probe.data(), probe.size(), 0) <= 0) {
        throw std::runtime_error("the main thread cannot be watched: no right to trace the program");
    }
    m_thread = std::thread([this] { watch(); });
}

MainThreadWatch::~MainThreadWatch()
{
    (void)longestAway();
    ::close(m_descriptor);
}

Milliseconds MainThreadWatch::longestAway()
{
    m_stop = true;
    if (m_thread.joinable()) {
        m_thread.join();
    }
    return m_longest;
}

void MainThreadWatch::watch()
{
    Clock::time_point lastSeenInLoop = Clock::now();
    Clock::time_point lastLook = lastSeenInLoop;
    while (!m_stop) {
        const bool inLoop = isInEventLoop(m_descriptor);
        const Clock::time_point now = Clock::now();
        m_longestStep = std::max(m_longestStep, Milliseconds(now - lastLook));
        lastLook = now;
        if (inLoop) {
            lastSeenInLoop = now;
        } else {
            m_longest = std::max(m_longest, Milliseconds(now - lastSeenInLoop));
        }
        std::this_thread::sleep_for(betweenLooks);
    }
}

} // namespace lumenfold::bench
