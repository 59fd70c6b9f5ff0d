#include "app/lifecycle/AppDelegate.h"
#include "app/lifecycle/CommandLine.h"
#include "app/lifecycle/CompositionRoot.h"
#include "platform/remoteactions/RunningInstance.h"
#include "platform/session/Backend.h"
#include "platform/session/InstanceLock.h"
#include "platform/session/SessionBus.h"
#include "platform/session/SessionEnd.h"
#include "platform/session/TerminationSignals.h"
#include "platform/workspace/Workspace.h"

#include <QApplication>
#include <QDebug>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <optional>

namespace {

using namespace lumenfold;

constexpr int couldNotStart = 1;
constexpr int misunderstood = 2;
constexpr std::chrono::seconds patienceWithSessionBus{2};

int fail(const QString &why)
{
    std::fprintf(stderr, "LumenFold cannot start: %s.\n", qUtf8Printable(why));
    return couldNotStart;
}

void nameApplication()
{
    QCoreApplication::setApplicationName(QStringLiteral("LumenFold"));
    QCoreApplication::setOrganizationName(QStringLiteral("LumenFold"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("lumenfold.org"));
    QCoreApplication::setApplicationVersion(QStringLiteral(LUMENFOLD_VERSION));
    // No display name: it is the name, and the toolkit would add it to the title of every window.
    QGuiApplication::setDesktopFileName(QStringLiteral("org.lumenfold.LumenFold"));
}

/// What can be answered without being the program; its exit status.
std::optional<int> answer(const CommandLine &command)
{
    using Wish = CommandLine::Wish;
    switch (command.wish) {
    case Wish::help:
        std::fputs(commandLineHelp().constData(), stdout);
        return 0;
    case Wish::version:
        std::puts("LumenFold " LUMENFOLD_VERSION);
        return 0;
    case Wish::misunderstood:
        std::fputs(commandLineHelp().constData(), stderr);
        return misunderstood;
    case Wish::start:
    case Wish::action:
        break;
    }
    return std::nullopt;
}

/// Somebody has started the program while another one runs.
int handOver(const CommandLine &command)
{
    if (command.action.isEmpty()) {
        std::puts("LumenFold is already running.");
        // Whoever launches it again wants to see something of it.
        askRunningInstance({}, patienceWithSessionBus);
        return 0;
    }
    if (!askRunningInstance(command.action, patienceWithSessionBus)) {
        std::fputs("LumenFold is running, but does not answer on the session bus.\n", stderr);
        return couldNotStart;
    }
    return 0;
}

int run(const Backend &backend, char *programName, const CommandLine &command)
{
    // A fraction of a pixel cannot be captured or placed, so scale factors are whole numbers.
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::Round);
    // The desktop's theme would bring its whole toolkit into the process (GTK: 40 MB) for a program that draws its
    // cards itself.
    QGuiApplication::setDesktopSettingsAware(false);
    nameApplication();

    // The backend's platform, whatever QT_QPA_PLATFORM says: as an argument, because the environment is handed on to
    // every program that is started from here. Its own command line has been read.
    QByteArray platformOption("-platform");
    QByteArray platform = backend.toolkitPlatform();
    std::array<char *, 4> arguments{programName, platformOption.data(), platform.data(), nullptr};
    int argumentCount = arguments.size() - 1;
    QApplication application(argumentCount, arguments.data());
    // Most of the time there is no window at all.
    QApplication::setQuitOnLastWindowClosed(false);

    auto services = backend.connect();
    if (!services) {
        return fail(services.error());
    }
    CompositionRoot root(std::move(*services));
    const TerminationSignals signals([&root] { root.workspace().terminate(); });
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &root.appDelegate(),
                     &AppDelegate::applicationWillTerminate);
    const SessionEnd sessionEnd({.save = [&root] { root.appDelegate().applicationWillTerminate(); },
                                 .end = [&root] { root.workspace().terminate(); }});
    root.appDelegate().applicationDidFinishLaunching();
    root.appDelegate().carryOut(QString::fromLatin1(command.action));
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    const CommandLine command = parseCommandLine(QByteArrayList(argv + 1, argv + std::max(argc, 1)));
    if (const auto status = answer(command)) {
        return *status;
    }
    const auto lock = InstanceLock::acquire(InstanceLock::standardPath());
    if (!lock && lock.error() == InstanceLock::Failure::taken) {
        return handOver(command);
    }
    if (command.action == "quit") {
        return 0; // Nothing runs.
    }
    if (!lock) {
        qWarning().noquote().nospace() << "LumenFold: no lock file can be made at " << InstanceLock::standardPath()
                                       << ", so nothing keeps a second LumenFold from starting";
    }

    if (greetSessionBus(patienceWithSessionBus) == SessionBusState::hanging) {
        qWarning().noquote() << "LumenFold: the session bus does not answer, so this run does without it";
        doWithoutSessionBus();
    }

    const SessionEnvironment session = SessionEnvironment::ofThisProcess();
    const Backends backends = allBackends();
    const auto backend = chooseBackend(backends, session);
    if (!backend) {
        return fail(backend.error());
    }
    if (const auto reachable = (*backend)->check(session); !reachable) {
        return fail(reachable.error());
    }
    return run(**backend, argv[0], command);
}
