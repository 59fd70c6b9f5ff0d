#pragma once

#include <QByteArray>

#include <dbus/dbus.h>

#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <type_traits>
#include <utility>

namespace lumenfold {

/// What `work` returns, if it does within `patience`. It runs on a thread that nobody waits for any longer: already the
/// connecting to a bus may have no end.
template <typename Work>
[[nodiscard]] std::optional<std::invoke_result_t<Work>> answerWithin(std::chrono::milliseconds patience, Work work)
{
    using Answer = std::invoke_result_t<Work>;
    dbus_threads_init_default();
    std::promise<Answer> promise;
    std::future<Answer> answer = promise.get_future();
    std::thread([promise = std::move(promise), work = std::move(work)]() mutable {
        promise.set_value(work());
    }).detach();
    return answer.wait_for(patience) == std::future_status::ready ? std::optional(answer.get()) : std::nullopt;
}

struct BusMessageDeleter {
    void operator()(DBusMessage *message) const { dbus_message_unref(message); }
};
using BusMessage = std::unique_ptr<DBusMessage, BusMessageDeleter>;

/// A connection to a message bus for a question or two, without the toolkit and before it: unlike the library's own
/// greeting, everything here has an end, except the connecting itself. Any one thread.
class PrivateBus {
public:
    /// Connects and greets; `patience` in milliseconds.
    PrivateBus(const QByteArray &address, int patience);
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;
    ~PrivateBus();

    [[nodiscard]] bool isConnected() const { return m_isGreeted; }
    /// Null for an error and when the time is over.
    [[nodiscard]] BusMessage ask(const BusMessage &question, int patience) const;

private:
    DBusConnection *m_connection;
    bool m_isGreeted = false;
};

} // namespace lumenfold
