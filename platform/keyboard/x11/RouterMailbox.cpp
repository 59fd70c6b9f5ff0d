#include "platform/keyboard/x11/RouterMailbox.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>
#include <utility>

namespace lumenfold::x11 {

RouterMailbox::RouterMailbox() : m_descriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

RouterMailbox::~RouterMailbox()
{
    ::close(m_descriptor);
}

bool RouterMailbox::post(Command command)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_closed) {
            return false;
        }
        m_commands.push_back(std::move(command));
    }
    wake();
    return true;
}

void RouterMailbox::wake() const
{
    const std::uint64_t once = 1;
    // Fails only when the counter is full, and then the descriptor is readable anyway.
    [[maybe_unused]] const auto written = ::write(m_descriptor, &once, sizeof once);
}

std::vector<RouterMailbox::Command> RouterMailbox::take()
{
    std::uint64_t count = 0;
    [[maybe_unused]] const auto read = ::read(m_descriptor, &count, sizeof count);
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_commands, {});
}

void RouterMailbox::close()
{
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    m_commands.clear();
}

} // namespace lumenfold::x11
