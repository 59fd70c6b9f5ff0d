/// The embedded editor of the shipped program, on a desktop of 4K and on one of 8K, against the editor of the service's
/// double: how soon its window comes, how soon an exported picture is a card, how long the main thread is away
/// meanwhile, and what it costs in memory before, during and after. Usage: editor_window [rounds].
#include "bench/DesktopPicture.h"
#include "bench/whole_program/MainThreadWatch.h"
#include "bench/whole_program/ProcessFigures.h"
#include "bench/whole_program/Rounds.h"
#include "tests/desktop/ProgramSettings.h"
#include "tests/support/desktop/Desktop.h"
#include "tests/support/service/ServiceDouble.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <thread>

namespace lumenfold::bench {
namespace {

using namespace test;

constexpr std::chrono::seconds patience{60};
constexpr std::chrono::seconds timeToComeToRest{5};

void print(const char *what, double figure)
{
    std::printf("| %-66s | %8.1f |\n", what, figure);
    std::fflush(stdout);
}

pid_t parentOf(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string text;
    std::getline(file, text);
    const auto name = text.rfind(')');
    return name == std::string::npos ? 0 : std::stoi(text.substr(text.find(' ', name + 2)));
}

/// Of the processes that the program has started.
double memoryOfHelpers(pid_t program)
{
    double sum = 0;
    for (const auto &entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        if (!std::all_of(name.begin(), name.end(), [](unsigned char sign) { return std::isdigit(sign); })) {
            continue;
        }
        const pid_t process = std::stoi(name);
        for (pid_t each = parentOf(process); each > 1; each = parentOf(each)) {
            if (each == program) {
                sum += proportionalMemory(process);
                break;
            }
        }
    }
    return sum;
}

class EditorOnDesktop {
public:
    explicit EditorOnDesktop(QSize size) : m_desktop(optionsFor(size, m_watch))
    {
        writeSettings(m_desktop,
                      "[General]\nLumenFold.editorBaseURLOverride=" + m_service.baseURL().toEncoded() + "\n");
        m_desktop.paintBackground(desktopPicture(size));
        m_desktop.startProgram();
        m_desktop.press("Super+Alt+1");
        m_desktop.waitForClipboard();
        m_card = m_desktop.waitForPanels(1).first().frame;
    }

    void measure()
    {
        const pid_t program = m_desktop.program().pid();
        std::this_thread::sleep_for(timeToComeToRest);
        const double before = proportionalMemory(program);
        print("memory (PSS) before the editor was ever opened, MiB", before);
        m_watch.begin(program);
        print("Edit to window on screen, first time, ms", open().count());
        waitForPicture();
        print("  longest stay of the main thread away, engine's start included, ms", m_watch.longestAway().count());
        std::this_thread::sleep_for(timeToComeToRest);
        print("memory with the editor open, program, MiB", proportionalMemory(program));
        print("  and its helpers, MiB", memoryOfHelpers(program));
        measureExport(program);
        m_watch.begin(program);
        print("Edit to window on screen, page loaded, ms", open().count());
        waitForPicture();
        print("  longest stay of the main thread away while the picture is handed over, ms",
              m_watch.longestAway().count());
        close();
        std::this_thread::sleep_for(timeToComeToRest);
        const double after = proportionalMemory(program);
        print("memory after closing, program, MiB", after);
        print("  and its helpers, MiB", memoryOfHelpers(program));
        print("  difference of the program's to before, MiB", after - before);
        m_watch.begin(program);
        print("Edit to window on screen, after closing, ms", open().count());
        waitForPicture();
        print("  longest stay of the main thread away, ms", m_watch.longestAway().count());
        close();
        std::this_thread::sleep_for(timeToComeToRest);
        print("memory after closing once more, program, MiB", proportionalMemory(program));
    }

private:
    [[nodiscard]] static DesktopOptions optionsFor(QSize size, const MainThreadWatch &watch)
    {
        DesktopOptions options{.size = size, .environment = watch.environment()};
        if (::geteuid() == 0) {
            options.environment.insert(QStringLiteral("QTWEBENGINE_DISABLE_SANDBOX"), QStringLiteral("1"));
        }
        return options;
    }

    [[nodiscard]] std::optional<WindowInfo> editor() const
    {
        const QList<WindowInfo> windows = m_desktop.windowsOfProgram();
        for (const WindowInfo &window : windows) {
            if (window.title.startsWith(u"Edit in LumenFold")) {
                return window;
            }
        }
        return std::nullopt;
    }

    Milliseconds open()
    {
        m_desktop.pointer().moveTo(m_card.center());
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        constexpr int aboveTheMiddle = 16;
        const Clock::time_point start = Clock::now();
        m_desktop.pointer().click(m_card.center() - QPoint(0, aboveTheMiddle));
        while (!editor()) {
            if (Clock::now() - start > patience) {
                throw std::runtime_error("no editor came");
            }
        }
        const Milliseconds took = Clock::now() - start;
        m_desktop.pointer().moveTo(m_desktop.server().size().width() > 2000 ? QPoint(2000, 300) : QPoint(900, 300));
        return took;
    }

    void waitForPicture()
    {
        ++m_shown;
        waitUntil(
            "the picture in the page",
            [this] {
                const auto requests = m_service.requests(ServiceDouble::Endpoint::page);
                return std::ranges::count(requests, "/editor/shown", &ReceivedRequest::path) == m_shown;
            },
            patience);
    }

    void measureExport(pid_t program)
    {
        waitUntil("the keys", [this] { return m_desktop.connection().focusedWindow() == editor()->id; });
        const qsizetype panels = m_desktop.panels().size();
        m_watch.begin(program);
        // The page encodes the picture first, which is its own time; it tells when it begins to hand it back.
        m_desktop.press("e");
        waitUntil(
            "the export",
            [this] {
                const auto requests = m_service.requests(ServiceDouble::Endpoint::page);
                return std::ranges::count(requests, "/editor/exported", &ReceivedRequest::path) == 1;
            },
            patience);
        const Clock::time_point start = Clock::now();
        while (m_desktop.panels().size() == panels) {
            if (Clock::now() - start > patience) {
                throw std::runtime_error("no card came");
            }
        }
        print("exported picture to card on screen, ms", Milliseconds(Clock::now() - start).count());
        print("  longest stay of the main thread away, ms", m_watch.longestAway().count());
    }

    void close()
    {
        waitUntil("the keys", [this] { return m_desktop.connection().focusedWindow() == editor()->id; });
        m_desktop.press("Alt+F4");
        waitUntil("the window to go", [this] { return !editor(); });
    }

    ServiceDouble m_service;
    MainThreadWatch m_watch;
    Desktop m_desktop;
    QRect m_card;
    qsizetype m_shown = 0;
};

void measure(int)
{
    for (const QSize size : {QSize(3840, 2160), QSize(7680, 4320)}) {
        std::printf("\n%d x %d, openbox on Xvfb\n\n", size.width(), size.height());
        EditorOnDesktop(size).measure();
    }
}

} // namespace
} // namespace lumenfold::bench

int main(int argc, char **argv)
{
    return lumenfold::bench::measureInRounds(argc, argv, 1, lumenfold::bench::measure);
}
