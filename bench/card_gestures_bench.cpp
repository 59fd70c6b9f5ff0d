/// How long the main thread is busy at a time while two hundred cards are shown, hovered, collapsed, swiped, cleared
/// and brought back: on an X server of its own, at two pixels to the point, with a compositor.
#include "app/actions/ActionHandler.h"
#include "app/configuration/AppConfig.h"
#include "cards/CardPersistence.h"
#include "cards/PreviewWindowController.h"
#include "cards/face/PreviewViews.h"
#include "platform/events/X11EventMonitors.h"
#include "platform/mainqueue/QtMainQueue.h"
#include "platform/panels/X11PanelFactory.h"
#include "platform/screens/X11Screens.h"
#include "platform/x11/X11Connection.h"

#include "bench/DesktopPicture.h"
#include "tests/support/desktop/Input.h"
#include "tests/support/desktop/PrivateFolders.h"
#include "tests/support/desktop/Session.h"
#include "tests/support/desktop/XServer.h"
#include "tests/support/fakes/FakeAppearance.h"
#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakeKeyEventTap.h"
#include "tests/support/fakes/FakePasteboard.h"
#include "tests/support/fakes/FakeUserDefaults.h"
#include "tests/support/fakes/FakeWorkspace.h"

#include <QApplication>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

namespace lumenfold {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr QSize screenSize{2560, 1620};
constexpr int scale = 2;
constexpr int cardCount = 200;

/// Knows how long every repaint of a window takes.
class MeasuringApplication : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (event->type() != QEvent::UpdateRequest) {
            return QApplication::notify(receiver, event);
        }
        const auto start = Clock::now();
        const bool isHandled = QApplication::notify(receiver, event);
        paintings.push_back(Milliseconds(Clock::now() - start).count());
        return isHandled;
    }

    std::vector<double> paintings;
};

/// The longest time for which the event loop got to nothing else.
class Heartbeat {
public:
    Heartbeat()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { beat(); });
    }

    void start()
    {
        m_longest = 0;
        m_longOnes = 0;
        m_last = Clock::now();
        m_timer.start();
    }
    void beat()
    {
        const auto now = Clock::now();
        const double gap = Milliseconds(now - m_last).count();
        m_last = now;
        m_longest = std::max(m_longest, gap);
        m_longOnes += gap > 50 ? 1 : 0;
    }
    void stop() { m_timer.stop(); }

    [[nodiscard]] double longest() const { return m_longest; }
    [[nodiscard]] int longerThanFifty() const { return m_longOnes; }

private:
    QTimer m_timer;
    Clock::time_point m_last;
    double m_longest = 0;
    int m_longOnes = 0;
};

void runFor(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

class Desk {
public:
    explicit Desk(const test::XServer &server) : m_pointer(server.display()) {}

    PreviewWindowController &controller() { return m_controller; }
    test::Pointer &pointer() { return m_pointer; }

    /// Where the newest card stands, in pixels.
    [[nodiscard]] QPoint newestCard() const
    {
        const Point place = m_controller.stackCards().back()->panel->frame().center();
        return {static_cast<int>(place.x * scale), static_cast<int>(screenSize.height() - place.y * scale)};
    }

private:
    test::FakeUserDefaults m_defaults;
    test::FakeFileManager m_files;
    test::FakeKeyEventTapService m_taps;
    test::FakePasteboard m_pasteboard;
    test::FakeWorkspace m_workspace;
    test::FakeAppearance m_appearance;
    QTemporaryDir m_folder;
    CardPersistence m_store{m_folder.filePath(QStringLiteral("cards"))};
    QtMainQueue m_queue;
    std::unique_ptr<x11::X11Connection> m_connection = x11::X11Connection::open();
    X11Screens m_screens{*m_connection};
    X11EventMonitors m_monitors{*m_connection, m_screens};
    AppConfig m_config{m_defaults, m_screens, m_files};
    ActionHandler m_actions{m_pasteboard, m_config};
    X11PanelFactory m_panels{x11::X11Connection::open(), {.taps = m_taps, .screens = m_screens}};
    PreviewViews m_views{{
        .panels = m_panels,
        .appearance = m_appearance,
        .screens = m_screens,
        .monitors = m_monitors,
        .actions = {.actions = m_actions, .config = m_config, .queue = m_queue, .workspace = m_workspace},
    }};
    PreviewWindowController m_controller{{.panels = m_panels,
                                          .monitors = m_monitors,
                                          .screens = m_screens,
                                          .config = m_config,
                                          .queue = m_queue,
                                          .views = m_views,
                                          .store = &m_store}};
    test::Pointer m_pointer;
};

class Report {
public:
    explicit Report(MeasuringApplication &application) : m_application(application)
    {
        std::printf("%-44s %14s %8s %9s %17s\n", "", "longest busy", "> 50 ms", "repaints", "longest / median");
    }

    /// What goes on from `action` until everything has come to rest.
    void measure(const char *name, const std::function<void()> &action,
                 std::chrono::milliseconds rest = std::chrono::milliseconds(700))
    {
        m_application.paintings.clear();
        m_heartbeat.start();
        action();
        m_heartbeat.beat();
        runFor(rest);
        m_heartbeat.stop();
        std::vector<double> paintings = m_application.paintings;
        std::ranges::sort(paintings);
        const double longest = paintings.empty() ? 0 : paintings.back();
        const double median = paintings.empty() ? 0 : paintings[paintings.size() / 2];
        std::printf("%-44s %11.1f ms %8d %9zu %6.1f / %5.1f ms\n", name, m_heartbeat.longest(),
                    m_heartbeat.longerThanFifty(), paintings.size(), longest, median);
        std::fflush(stdout);
    }

private:
    MeasuringApplication &m_application;
    Heartbeat m_heartbeat;
};

void run(Desk &desk, MeasuringApplication &application)
{
    PreviewWindowController &controller = desk.controller();
    const Image ordinary = Image::fromPixels(bench::desktopPicture({1280, 810}));
    const QByteArray png = ordinary.pngData().value_or(QByteArray());
    const Image large = Image::fromPixels(bench::desktopPicture({3840, 2160}));
    (void)large.pngData();
    desk.pointer().moveTo({1600, 300});
    Report report(application);

    report.measure("the first card appears", [&] { controller.show(large); });
    for (int count = 1; count < cardCount; ++count) {
        controller.show(Image::fromPng(png));
        runFor(std::chrono::milliseconds(1));
    }
    runFor(std::chrono::seconds(2));
    report.measure("one more card slides in", [&] { controller.show(Image::fromPng(png)); });
    report.measure("the pointer comes to the column", [&] { desk.pointer().moveTo(desk.newestCard()); });
    report.measure("the pointer moves about on a card", [&] {
        for (int step = 0; step < 200; ++step) {
            desk.pointer().moveTo(desk.newestCard() + QPoint(step % 40, step % 25));
        }
    });
    report.measure("the wheel collapses the column", [&] { desk.pointer().scroll(test::Button::scrollUp, 2); });
    desk.pointer().moveTo({200, screenSize.height() - 20});
    report.measure("the wheel expands it", [&] { desk.pointer().scroll(test::Button::scrollDown, 2); });
    desk.pointer().moveTo(desk.newestCard());
    report.measure("a card is swiped away", [&] { desk.pointer().scroll(test::Button::scrollRight, 6); });
    report.measure("and brought back", [&] { controller.restoreLastDismissed(); });
    report.measure("a 4K card is closed", [&] { controller.stackCards().front()->model->onDismiss(); });
    report.measure("and brought back", [&] { controller.restoreLastDismissed(); });
    report.measure("all are cleared", [&] { controller.clearAll(); });
    report.measure(
        "and brought back", [&] { controller.restoreLastDismissed(); }, std::chrono::seconds(3));
    std::printf("%zu cards are there again\n", controller.stackCards().size());
    report.measure(
        "twenty are closed, ten a second",
        [&] {
            for (int count = 0; count < 20; ++count) {
                controller.stackCards().back()->model->onDismiss();
                runFor(std::chrono::milliseconds(100));
            }
        },
        std::chrono::seconds(1));
    report.measure("the others are cleared", [&] { controller.clearAll(); });
    report.measure(
        "and forgotten after twelve seconds", [] {}, std::chrono::milliseconds(12500));
}

} // namespace
} // namespace lumenfold

int main(int argc, char **argv)
{
    using namespace lumenfold;
    test::XServer server({.size = screenSize, .scale = scale});
    const test::Compositor compositor(server, test::CompositorKind::plain);
    const test::PrivateFolders folders;
    QProcessEnvironment environment = server.clientEnvironment();
    folders.applyTo(environment);
    for (const QString &name : environment.keys()) {
        qputenv(name.toLocal8Bit().constData(), environment.value(name).toLocal8Bit());
    }
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::Round);
    QGuiApplication::setDesktopSettingsAware(false);
    MeasuringApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Desk desk(server);
    run(desk, application);
}
