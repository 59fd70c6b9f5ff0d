/// What people feel of LumenFold, measured from outside on a 4K desktop with a photograph behind windows full of text:
/// openbox, a compositor, real key presses. Usage: whole_program [rounds]; LUMENFOLD_BINARY names another program.
#include "bench/DesktopPicture.h"
#include "bench/whole_program/Comparison.h"
#include "bench/whole_program/MainThreadWatch.h"
#include "bench/whole_program/ProcessFigures.h"
#include "bench/whole_program/Rounds.h"
#include "tests/support/desktop/Desktop.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <cstdio>
#include <stdexcept>
#include <thread>

namespace lumenfold::bench {
namespace {

using namespace test;

constexpr QSize desktopSize{3840, 2160};
/// What the program waits on purpose, so that its hidden cards have left the screen.
constexpr Milliseconds settlingDelay{60};
constexpr std::chrono::seconds restPeriod{30};
constexpr std::chrono::seconds timeToComeToRest{5};

void print(const char *what, const QString &figure)
{
    std::printf("| %-62s | %16s |\n", what, qPrintable(figure));
    std::fflush(stdout);
}

QString inMilliseconds(const Samples &samples)
{
    return QStringLiteral("%1 (max %2)")
        .arg(samples.median().count(), 0, 'f', 1)
        .arg(samples.slowest().count(), 0, 'f', 1);
}

QString inMilliseconds(const std::optional<Samples> &samples)
{
    return samples ? inMilliseconds(*samples) : QStringLiteral("not installed");
}

/// Windows of other programs, cut out of the painted desktop, so that the server and the compositor have real ones.
void openWindows(Desktop &desktop, const QImage &picture)
{
    for (const QRect frame : {QRect(300, 250, 1500, 1100), QRect(1700, 500, 1600, 1300), QRect(900, 1200, 1200, 800)}) {
        desktop.openWindow({.frame = frame, .picture = picture.copy(frame)});
    }
}

/// From the press of the last key to all of the PNG in another program's hands.
Milliseconds timeOfCapture(Desktop &desktop)
{
    desktop.keyboard().down("Super");
    desktop.keyboard().down("Alt");
    const Clock::time_point start = Clock::now();
    desktop.keyboard().down("1");
    if (!desktop.clipboard().waitForOwnerChange()) {
        throw std::runtime_error("no capture came to the clipboard");
    }
    const QByteArray png = desktop.clipboardPng();
    const Milliseconds took = Clock::now() - start;
    desktop.keyboard().up("1");
    desktop.keyboard().up("Alt");
    desktop.keyboard().up("Super");
    if (QImage::fromData(png, "PNG").size() != desktopSize) {
        throw std::runtime_error("the clipboard has no picture of the whole screen");
    }
    return took;
}

/// From the press of the last key to a dimmed screen, as the compositor shows it.
Milliseconds timeOfOverlay(Desktop &desktop)
{
    constexpr QRect somewhere{desktopSize.width() - 40, 900, 1, 1};
    const QImage before = desktop.picture(somewhere);
    desktop.keyboard().down("Super");
    desktop.keyboard().down("Alt");
    const Clock::time_point start = Clock::now();
    desktop.keyboard().down("2");
    const Clock::time_point tooLate = start + std::chrono::seconds(5);
    while (differingPixels(desktop.picture(somewhere), before) == 0) {
        if (Clock::now() > tooLate) {
            throw std::runtime_error("no overlay came");
        }
    }
    const Milliseconds took = Clock::now() - start;
    desktop.keyboard().up("2");
    desktop.keyboard().up("Alt");
    desktop.keyboard().up("Super");
    desktop.press("Escape");
    waitUntil("the overlay to go", [&] { return differingPixels(desktop.picture(somewhere), before) == 0; });
    return took;
}

void measureCaptures(Desktop &desktop, MainThreadWatch &watch, int rounds)
{
    Samples fullScreen;
    Samples awayInCaptures;
    for (int round = 0; round < rounds; ++round) {
        watch.begin(desktop.program().pid());
        fullScreen.values.push_back(timeOfCapture(desktop) - settlingDelay);
        desktop.waitForStillPicture();
        awayInCaptures.values.push_back(watch.longestAway());
    }
    print("shortcut to PNG in another program, less 60 ms, ms", inMilliseconds(fullScreen));
    print("  longest stay of the main thread away from its loop, ms", inMilliseconds(awayInCaptures));

    Samples overlay;
    Samples awayInSelections;
    for (int round = 0; round < rounds; ++round) {
        watch.begin(desktop.program().pid());
        overlay.values.push_back(timeOfOverlay(desktop));
        desktop.waitForStillPicture();
        awayInSelections.values.push_back(watch.longestAway());
    }
    print("area shortcut to overlay on the screen, ms", inMilliseconds(overlay));
    print("  longest stay of the main thread away from its loop, ms", inMilliseconds(awayInSelections));
}

/// From the start of the process to hotkeys that are bound, with no cards.
void measureStarts(Desktop &desktop, int rounds)
{
    Samples bound;
    for (int round = 0; round < rounds; ++round) {
        const Clock::time_point start = Clock::now();
        desktop.startProgram();
        bound.values.emplace_back(Clock::now() - start);
        desktop.quitProgram();
    }
    print("start of the process to hotkeys bound, no cards, ms", inMilliseconds(bound));
}

/// From a call on the session bus to its answer, which comes when the capture has begun.
void measureActions(Desktop &desktop, int rounds)
{
    const QString connection = QStringLiteral("caller");
    QDBusConnection bus = QDBusConnection::connectToBus(
        desktop.environment().value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")), connection);
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.lumenfold.LumenFold"), QStringLiteral("/org/lumenfold/LumenFold"),
        QStringLiteral("org.freedesktop.Application"), QStringLiteral("ActivateAction"));
    call << QStringLiteral("capture-full-screen") << QVariantList() << QVariantMap();
    Samples begun;
    for (int round = 0; round < rounds; ++round) {
        const Clock::time_point start = Clock::now();
        if (bus.call(call).type() != QDBusMessage::ReplyMessage) {
            throw std::runtime_error("the program is not on the bus");
        }
        begun.values.emplace_back(Clock::now() - start);
        desktop.waitForClipboard();
        desktop.waitForStillPicture();
    }
    QDBusConnection::disconnectFromBus(connection);
    print("call on the session bus to a capture that has begun, ms", inMilliseconds(begun));
}

void measureRest(Desktop &desktop, const char *memory, const char *wakeUps)
{
    std::this_thread::sleep_for(timeToComeToRest);
    const pid_t program = desktop.program().pid();
    const double switches = wakeUpsPerSecond(program, restPeriod);
    print(memory, QString::number(proportionalMemory(program), 'f', 1));
    print(wakeUps, QString::number(switches, 'f', 2));
}

void measure(int rounds)
{
    MainThreadWatch watch;
    Desktop desktop({.size = desktopSize, .compositor = CompositorKind::plain, .environment = watch.environment()});
    const QImage picture = desktopPicture(desktopSize);
    desktop.paintBackground(picture);
    openWindows(desktop, picture);
    desktop.pointer().moveTo({2600, 300});

    print("3840 x 2160, openbox and picom on Xvfb", QStringLiteral("median of %1").arg(rounds));
    print("---", QStringLiteral("---"));
    measureStarts(desktop, rounds);
    desktop.startProgram();
    measureRest(desktop, "memory (PSS) after start, MiB", "wake-ups at rest after start, per second");
    measureCaptures(desktop, watch, rounds);
    measureRest(desktop, "memory (PSS) with the cards of these captures, MiB",
                "wake-ups at rest with cards, per second");
    measureActions(desktop, rounds);
    desktop.quitProgram();

    print("flameshot full: start to finished file, ms",
          inMilliseconds(timeOfCapturingProgram(desktop, QStringLiteral("flameshot"),
                                                {QStringLiteral("full"), QStringLiteral("-p"), QStringLiteral("%f")},
                                                rounds)));
    print("scrot: start to finished file, ms",
          inMilliseconds(timeOfCapturingProgram(desktop, QStringLiteral("scrot"), {QStringLiteral("%f")}, rounds)));
    if (const auto flameshot = residentFigures(desktop, QStringLiteral("flameshot"), restPeriod)) {
        print("flameshot waiting: memory (PSS), MiB", QString::number(flameshot->mebibytes, 'f', 1));
        print("flameshot waiting: wake-ups per second", QString::number(flameshot->wakeUpsPerSecond, 'f', 2));
    }
}

} // namespace
} // namespace lumenfold::bench

int main(int argc, char **argv)
{
    constexpr int defaultRounds = 15;
    return lumenfold::bench::measureInRounds(argc, argv, defaultRounds, lumenfold::bench::measure);
}
