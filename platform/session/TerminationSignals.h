#pragma once

#include <QObject>

#include <functional>
#include <memory>

class QSocketNotifier;

namespace lumenfold {

/// Turns the signals with which sessions and users end a program (SIGTERM, SIGINT, SIGHUP) into a call on the main
/// thread. A second signal of the same kind ends the process at once, in case the orderly way hangs. One at a time.
class TerminationSignals {
public:
    explicit TerminationSignals(std::function<void()> onSignal);
    TerminationSignals(const TerminationSignals &) = delete;
    TerminationSignals &operator=(const TerminationSignals &) = delete;
    /// The signals end the process again.
    ~TerminationSignals();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace lumenfold
