/// A picker with five thousand templates: what each key of a search costs the main thread, painting included, and how
/// long repaints take while one scrolls. On an X server of its own, at two pixels to the point.
#include "app/theme/WindowTheme.h"
#include "platform/notifications/NotificationCenter.h"
#include "service/templates/TemplateGrid.h"
#include "service/templates/TemplatePickerView.h"
#include "service/templates/TemplatePreviews.h"
#include "service/templates/TemplateStore.h"

#include "bench/Stopwatch.h"
#include "tests/support/desktop/PrivateFolders.h"
#include "tests/support/desktop/Session.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/desktop/XServer.h"
#include "tests/support/fakes/FakeAppearance.h"
#include "tests/support/fakes/FakePreviewDownloads.h"
#include "tests/support/fakes/FakeService.h"
#include "tests/support/fakes/FakeUserDefaults.h"

#include <QApplication>
#include <QBuffer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace lumenfold {
namespace {

using bench::Cost;
using bench::Stopwatch;

constexpr int scale = 2;
constexpr int templateCount = 5000;
/// What one may take of the time between two pictures on the screen.
constexpr double oneFrame = 16;

/// Knows how long every repaint of a window takes.
class MeasuringApplication : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (event->type() != QEvent::UpdateRequest) {
            return QApplication::notify(receiver, event);
        }
        const Stopwatch watch;
        const bool isHandled = QApplication::notify(receiver, event);
        paintings.push_back(watch.read());
        return isHandled;
    }

    std::vector<Cost> paintings;
};

void report(const char *name, std::vector<Cost> costs)
{
    if (costs.empty()) {
        return;
    }
    std::ranges::sort(costs, {}, &Cost::elapsed);
    const double longest = costs.back().elapsed;
    const double work = std::ranges::max(costs, {}, &Cost::work).work;
    std::printf("%-42s %4zu times, median %6.2f ms, longest %6.2f ms, most work %6.2f ms%s\n", name, costs.size(),
                costs[costs.size() / 2].elapsed, longest, work, longest > oneFrame ? "  (over 16 ms)" : "");
    std::fflush(stdout);
}

QByteArray picture()
{
    QImage pixels(800, 600, QImage::Format_RGB32);
    for (int y = 0; y < pixels.height(); ++y) {
        for (int x = 0; x < pixels.width(); ++x) {
            pixels.setPixel(x, y, qRgb(x % 256, y % 256, (x + y) % 256));
        }
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    pixels.save(&buffer, "png");
    return bytes;
}

std::vector<LumenfoldTemplate> manyTemplates()
{
    const char *const kinds[]{"Banner",    "Team logo",   "Release notes", "Poster",
                              "Café menu", "Social post", "Überschrift"};
    std::vector<LumenfoldTemplate> templates;
    for (int number = 0; number < templateCount; ++number) {
        templates.push_back({.id = QStringLiteral("id-%1").arg(number),
                             .name = QStringLiteral("%1 %2").arg(QString::fromUtf8(kinds[number % 7])).arg(number),
                             .previewUrl = QStringLiteral("https://files.example/%1.png").arg(number),
                             .editedAt = QStringLiteral("2024-%1").arg(number * 7919 % templateCount)});
    }
    return templates;
}

class Desk {
public:
    explicit Desk(MeasuringApplication &application) : m_application(application)
    {
        m_service.templates = manyTemplates();
        m_store.select(m_service.templates[templateCount / 2]);
        WindowTheme::install(m_picker, m_appearance);
        m_picker.resize(520, 416);
        m_picker.show();
        test::waitUntil("the window", [this] { return m_picker.isVisible() && !m_application.paintings.empty(); });
        QObject::connect(&m_answering, &QTimer::timeout, [this] { m_downloads.endAll(m_picture); });
        m_answering.start(1);
    }

    void measureList()
    {
        const Stopwatch watch;
        m_service.succeed();
        m_picker.repaint();
        report("the list arrives and is painted", {watch.read()});
    }

    /// One key and all that follows from it at once, up to the pixels in the window.
    void measureSearch()
    {
        auto &field = *m_picker.findChild<QLineEdit *>();
        std::vector<Cost> costs;
        for (const char *word : {"poster 1234", "logo", "zzz", "e", "überschrift 49"}) {
            const QString text = QString::fromUtf8(word);
            for (const QChar letter : text) {
                costs.push_back(costOf(field, Qt::Key_unknown, letter));
            }
            for (qsizetype left = text.size(); left > 0; --left) {
                costs.push_back(costOf(field, Qt::Key_Backspace, {}));
            }
        }
        report("a key of a search, with its painting", costs);
    }

    void measureScrolling()
    {
        auto &bar = *m_picker.findChild<TemplateGrid *>()->verticalScrollBar();
        settle();
        measure("a repaint while scrolling by 40 points", bar, 40, 400);
        measure("a repaint while flinging by 2000 points", bar, 2000, 80);
        settle();
        measure("a repaint while scrolling with pictures", bar, -10, 400);
    }

private:
    Cost costOf(QLineEdit &field, int key, const QString &text)
    {
        const Stopwatch watch;
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(&field, &press);
        m_picker.repaint();
        return watch.read();
    }

    void measure(const char *name, QScrollBar &bar, int step, int steps)
    {
        m_application.paintings.clear();
        for (int count = 0; count < steps; ++count) {
            bar.setValue(bar.value() + step);
            const std::size_t before = m_application.paintings.size();
            (void)test::waitFor([&] { return m_application.paintings.size() > before || bar.value() == bar.maximum(); },
                                std::chrono::milliseconds(200));
        }
        report(name, m_application.paintings);
    }

    void settle()
    {
        (void)test::staysTrue([] { return true; }, std::chrono::milliseconds(200));
        const auto *previews = m_picker.findChild<TemplatePreviews *>();
        test::waitUntil("the pictures", [previews] { return previews->loads() == 0; });
    }

    MeasuringApplication &m_application;
    test::FakeLumenfoldService m_service;
    test::FakeApiKeySetupWindow m_apiKeySetup;
    test::FakeUserDefaults m_defaults;
    NotificationCenter m_notifications;
    TemplateStore m_store{m_defaults, m_notifications};
    test::FakeAppearance m_appearance;
    test::FakePreviewDownloads m_downloads;
    QTemporaryDir m_folder;
    const QByteArray m_picture = picture();
    QTimer m_answering;
    TemplatePickerView m_picker{{.picker = {.service = m_service,
                                            .isSignedIn = [] { return true; },
                                            .store = m_store,
                                            .notifications = m_notifications,
                                            .apiKeySetup = m_apiKeySetup},
                                 .downloads = m_downloads,
                                 .cache = PreviewCache(m_folder.path())}};
};

} // namespace
} // namespace lumenfold

int main(int argc, char **argv)
{
    using namespace lumenfold;
    const test::XServer server({.size = QSize(1600, 1200), .scale = scale});
    const test::PrivateFolders folders;
    QProcessEnvironment environment = server.clientEnvironment();
    folders.applyTo(environment);
    const QStringList names = environment.keys();
    for (const QString &name : names) {
        qputenv(name.toLocal8Bit().constData(), environment.value(name).toLocal8Bit());
    }
    MeasuringApplication application(argc, argv);
    Desk desk(application);
    desk.measureList();
    desk.measureSearch();
    desk.measureScrolling();
    return 0;
}
