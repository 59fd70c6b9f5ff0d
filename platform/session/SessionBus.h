#pragma once

#include <chrono>

namespace lumenfold {

/// How the session bus answers a greeting.
enum class SessionBusState {
    /// It is there, or there is certainly none: whoever asks for it is told at once.
    clear,
    /// It takes connections and says nothing.
    hanging,
};

inline constexpr const char *sessionBusVariable = "DBUS_SESSION_BUS_ADDRESS";
/// An address of no known kind, for a process that does without.
inline constexpr const char *noSessionBus = "disabled:";

/// Waits for the answer of the session bus for as long as `patience`; a bus that works answers within about a
/// millisecond. The toolkit waits for the bus without end as soon as a window is shown, for the sake of assistive
/// technologies, so this is asked before there is a QGuiApplication.
[[nodiscard]] SessionBusState greetSessionBus(std::chrono::milliseconds patience);

/// From now on this process has no session bus: asking for it fails at once. To be called before anything asked for it.
void doWithoutSessionBus();

} // namespace lumenfold
