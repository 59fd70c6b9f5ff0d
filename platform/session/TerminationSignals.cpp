#include "platform/session/TerminationSignals.h"

#include <QDebug>
#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <utility>

namespace lumenfold {
namespace {

constexpr std::array terminationSignals{SIGTERM, SIGINT, SIGHUP};

/// A handler may do next to nothing, so it writes into a pipe that the event loop reads. (Blocking the signals and
/// reading a signalfd would hand the blocked signals on to every program that is started from here.)
std::array<int, 2> signalPipe{-1, -1};

void writeToPipe(int)
{
    const char byte = 0;
    // There is nobody to tell if it fails.
    [[maybe_unused]] const ssize_t written = write(signalPipe[1], &byte, 1);
}

void setHandler(int signal, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART | SA_RESETHAND;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> onSignal)
{
    if (pipe2(signalPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        qWarning().noquote() << "LumenFold: no pipe for signals; they end the program at once";
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(signalPipe[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [onSignal = std::move(onSignal)] {
        char byte = 0;
        while (read(signalPipe[0], &byte, 1) == 1) {
        }
        onSignal();
    });
    for (const int signal : terminationSignals) {
        setHandler(signal, writeToPipe);
    }
}

TerminationSignals::~TerminationSignals()
{
    if (!m_notifier) {
        return;
    }
    for (const int signal : terminationSignals) {
        setHandler(signal, SIG_DFL);
    }
    m_notifier.reset();
    for (int &descriptor : signalPipe) {
        close(std::exchange(descriptor, -1));
    }
}

} // namespace lumenfold
