#include "platform/session/SessionBus.h"

#include "platform/session/PrivateBus.h"

#include <QByteArray>

namespace lumenfold {

SessionBusState greetSessionBus(std::chrono::milliseconds patience)
{
    const QByteArray address = qgetenv(sessionBusVariable);
    if (address.isEmpty()) {
        return SessionBusState::clear;
    }
    // A bus that refuses the greeting does not hang.
    const auto greeted = answerWithin(patience, [address, patience = static_cast<int>(patience.count())] {
        return PrivateBus(address, 2 * patience).isConnected();
    });
    return greeted ? SessionBusState::clear : SessionBusState::hanging;
}

void doWithoutSessionBus()
{
    qputenv(sessionBusVariable, noSessionBus);
}

} // namespace lumenfold
