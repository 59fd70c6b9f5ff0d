/// Preloaded into the measured program: notes when its main thread leaves its event loop and when it comes back, which
/// is when it calls poll or ppoll for two descriptors at least. xcb waits for a reply on one, so that counts as away.
#include "bench/whole_program/LoopRecord.h"

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

using lumenfold::bench::LoopRecord;

LoopRecord *mappedRecord()
{
    // What the program starts has the variable too, under names of its own.
    const char *path = std::getenv(LoopRecord::fileVariable);
    if (path == nullptr || std::strcmp(program_invocation_short_name, "lumenfold") != 0) {
        return nullptr;
    }
    const int file = ::open(path, O_RDWR | O_CLOEXEC);
    struct stat status {};
    if (file < 0 || ::fstat(file, &status) != 0 || status.st_size < static_cast<off_t>(sizeof(LoopRecord))) {
        return nullptr;
    }
    void *memory = ::mmap(nullptr, sizeof(LoopRecord), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    ::close(file);
    return memory == MAP_FAILED ? nullptr : static_cast<LoopRecord *>(memory);
}

std::int64_t now()
{
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    constexpr std::int64_t nanoseconds = 1'000'000'000;
    return time.tv_sec * nanoseconds + time.tv_nsec;
}

LoopRecord *record()
{
    static LoopRecord *const mapped = [] {
        LoopRecord *made = mappedRecord();
        if (made != nullptr) {
            made->awaySince = now();
            made->longestAway = 0;
            made->program = ::getpid();
        }
        return made;
    }();
    return mapped;
}

/// The start of the program counts as well.
[[maybe_unused]] LoopRecord *const noted = record();

/// Around one wait in the main thread's event loop.
class Visit {
public:
    explicit Visit(nfds_t descriptors)
        : m_record(descriptors >= 2 && ::syscall(SYS_gettid) == ::getpid() ? record() : nullptr)
    {
        if (m_record != nullptr) {
            const std::int64_t away = now() - m_record->awaySince;
            m_record->longestAway = std::max(m_record->longestAway.load(), away);
            m_record->awaySince = 0;
        }
    }
    ~Visit()
    {
        if (m_record != nullptr) {
            m_record->awaySince = now();
        }
    }
    Visit(const Visit &) = delete;
    Visit &operator=(const Visit &) = delete;

private:
    LoopRecord *m_record;
};

template <typename Function>
Function *original(const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

int poll(pollfd *descriptors, nfds_t count, int timeout)
{
    static auto *const next = original<int(pollfd *, nfds_t, int)>("poll");
    const Visit visit(count);
    return next(descriptors, count, timeout);
}

int ppoll(pollfd *descriptors, nfds_t count, const timespec *timeout, const sigset_t *signals)
{
    static auto *const next = original<int(pollfd *, nfds_t, const timespec *, const sigset_t *)>("ppoll");
    const Visit visit(count);
    return next(descriptors, count, timeout, signals);
}

} // extern "C"
