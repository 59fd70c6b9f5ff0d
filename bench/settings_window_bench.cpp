/// How long the settings window takes from present() until all of it has been painted and the server has it: the first
/// time, in a process that has shown no window yet, and each time after that. With a window manager, on an X server of
/// its own, at two scales. Beside the time on the clock stands the main thread's own working time, which other programs
/// do not lengthen.
#include "bench/Stopwatch.h"
#include "tests/support/desktop/PrivateFolders.h"
#include "tests/support/desktop/Session.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/desktop/XServer.h"
#include "tests/support/settings/SettingsDesk.h"

#include <QApplication>
#include <QDialog>
#include <QProcess>
#include <QWindow>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace lumenfold {
namespace {

using bench::Cost;

constexpr int rounds = 20;
constexpr double firstTimeBound = 150;
constexpr double laterBound = 50;

/// Knows when a window has been painted as it should be.
class WatchingApplication : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        const bool isHandled = QApplication::notify(receiver, event);
        // The window's pixels are handed to the server at the end of each of these.
        if (event->type() == QEvent::Expose || event->type() == QEvent::UpdateRequest) {
            const auto *window = test::SettingsDesk::window();
            hasPainted |= window != nullptr && window->isVisible() && window->windowHandle()->isExposed();
        }
        return isHandled;
    }

    bool hasPainted = false;
};

Cost present(WatchingApplication &application, test::SettingsDesk &desk)
{
    application.hasPainted = false;
    const bench::Stopwatch watch;
    desk.controller->present();
    while (!application.hasPainted) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return watch.read();
}

void hide()
{
    test::SettingsDesk::window()->close();
    test::waitUntil("the window to go", [] { return !test::SettingsDesk::window()->windowHandle()->isExposed(); });
}

int measure(int argc, char **argv)
{
    WatchingApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    test::SettingsDesk desk;
    // As it is when somebody has found the menu: the event loop runs, and nothing is under way.
    (void)test::staysTrue([] { return true; }, std::chrono::milliseconds(200));
    const Cost first = present(application, desk);
    std::vector<Cost> later;
    for (int round = 0; round < rounds; ++round) {
        hide();
        later.push_back(present(application, desk));
    }
    std::ranges::sort(later, {}, &Cost::elapsed);
    const double mostWork = std::ranges::max(later, {}, &Cost::work).work;
    const bool isQuick = first.elapsed <= firstTimeBound && later.back().elapsed <= laterBound;
    std::printf("first time %6.1f ms (work %5.1f); after that median %5.1f ms, longest %5.1f ms (most work %4.1f)%s\n",
                first.elapsed, first.work, later[later.size() / 2].elapsed, later.back().elapsed, mostWork,
                isQuick ? "" : "  over 150 and 50 ms");
    return 0;
}

int measureInProcessesOfTheirOwn(char **argv)
{
    constexpr int processes = 5;
    for (const int scale : {1, 2}) {
        test::XServer server({.size = QSize(1280, 800) * scale, .scale = scale});
        const test::WindowManager windowManager(server, test::WindowManagerKind::openbox);
        const test::PrivateFolders folders;
        QProcessEnvironment environment = server.clientEnvironment();
        folders.applyTo(environment);
        std::printf("scale %d\n", scale);
        std::fflush(stdout);
        for (int count = 0; count < processes; ++count) {
            QProcess process;
            process.setProcessEnvironment(environment);
            process.setProcessChannelMode(QProcess::ForwardedChannels);
            process.start(QString::fromLocal8Bit(argv[0]), {QStringLiteral("--measure")});
            if (!process.waitForFinished() || process.exitCode() != 0) {
                return EXIT_FAILURE;
            }
        }
    }
    return EXIT_SUCCESS;
}

} // namespace
} // namespace lumenfold

int main(int argc, char **argv)
{
    using namespace lumenfold;
    return argc > 1 ? measure(argc, argv) : measureInProcessesOfTheirOwn(argv);
}
