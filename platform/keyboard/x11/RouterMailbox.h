#pragma once

#include <functional>
#include <mutex>
#include <vector>

namespace lumenfold::x11 {

class KeyRouting;

/// What other threads want the router's thread to do. Any thread.
class RouterMailbox {
public:
    using Command = std::function<void(KeyRouting &)>;

    RouterMailbox();
    ~RouterMailbox();
    RouterMailbox(const RouterMailbox &) = delete;
    RouterMailbox &operator=(const RouterMailbox &) = delete;

    /// Runs on the router's thread, in the order of posting. False, and never run, when the router has ended.
    bool post(Command command);

    /// Makes the router's thread look around.
    void wake() const;

    /// Readable while there is something to look at.
    [[nodiscard]] int descriptor() const { return m_descriptor; }

    /// What has been posted since the last call; resets the descriptor. The router's thread.
    [[nodiscard]] std::vector<Command> take();

    /// The router takes nothing more. What was posted and not taken is dropped.
    void close();

private:
    int m_descriptor;
    std::mutex m_mutex;
    std::vector<Command> m_commands;
    bool m_closed = false;
};

} // namespace lumenfold::x11
