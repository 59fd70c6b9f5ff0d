#include "platform/session/SessionBus.h"

#include "platform/session/PrivateBus.h"

#include <QByteArray>

#include <future>
#include <memory>
#include <thread>

namespace lumenfold {

SessionBusState greetSessionBus(std::chrono::milliseconds patience)
{
    const QByteArray address = qgetenv(sessionBusVariable);
    if (address.isEmpty()) {
        return SessionBusState::clear;
    }
    dbus_threads_init_default();
    auto greeted = std::make_shared<std::promise<void>>();
    const std::future<void> answered = greeted->get_future();
    // Nobody waits for this thread: the greeting has an end, but already the connecting may have none.
    std::thread([greeted, address, patience = static_cast<int>(patience.count())] {
        const PrivateBus greeting(address, 2 * patience);
        greeted->set_value();
    }).detach();
    return answered.wait_for(patience) == std::future_status::ready ? SessionBusState::clear : SessionBusState::hanging;
}

void doWithoutSessionBus()
{
    qputenv(sessionBusVariable, noSessionBus);
}

} // namespace lumenfold
