/// How long people wait for two hundred stored cards of a 4K desktop when the program starts, and what the cards cost
/// when nobody looks at them, measured from outside. Usage: restart_with_cards [rounds]; LUMENFOLD_BINARY names another
/// program.
#include "bench/DesktopPicture.h"
#include "bench/whole_program/MainThreadWatch.h"
#include "bench/whole_program/ProcessFigures.h"
#include "bench/whole_program/Rounds.h"
#include "bench/whole_program/Timing.h"
#include "platform/image/PngEncoder.h"
#include "tests/support/desktop/Desktop.h"
#include "tests/support/desktop/PrivateFolders.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <thread>
#include <vector>

namespace lumenfold::bench {
namespace {

using namespace test;

constexpr QSize desktopSize{3840, 2160};
constexpr int cardCount = 200;
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

/// Cards with files of their own each, images and editor source images, of a few different pictures.
void storeCards(const QString &folder)
{
    std::vector<QByteArray> pictures;
    QImage picture = desktopPicture(desktopSize);
    for (const QColor color : {Qt::red, Qt::green, Qt::blue, Qt::yellow}) {
        for (int x = 0; x < picture.width(); ++x) {
            picture.setPixelColor(x, 10, color);
        }
        pictures.push_back(PngEncoder::encodeAndWait(picture).value());
    }
    QDir().mkpath(folder);
    QJsonArray manifest;
    for (int number = 0; number < cardCount; ++number) {
        const QString id = QStringLiteral("card-%1").arg(number);
        const QByteArray &png = pictures[static_cast<std::size_t>(number) % pictures.size()];
        writeFile(folder + u'/' + id + QStringLiteral(".png"), png);
        writeFile(folder + u'/' + id + QStringLiteral("-source.png"), png);
        manifest.append(QJsonObject{
            {QStringLiteral("id"), id}, {QStringLiteral("editorSourceId"), id}, {QStringLiteral("isPinned"), false}});
    }
    writeFile(folder + QStringLiteral("/manifest.json"), QJsonDocument(manifest).toJson(QJsonDocument::Compact));
    print("bytes of one stored image", QString::number(pictures.front().size()));
}

/// The part of the screen on which cards stand.
QRect columnOf(const Desktop &desktop)
{
    QRect column;
    for (const WindowInfo &panel : desktop.panels()) {
        column |= panel.frame;
    }
    return column & QRect(QPoint(0, 0), desktopSize);
}

void measure(int rounds)
{
    MainThreadWatch watch;
    Desktop desktop({.size = desktopSize, .compositor = CompositorKind::plain, .environment = watch.environment()});
    storeCards(desktop.folders().data() + QStringLiteral("/LumenFold/cards"));
    desktop.paintBackground(desktopPicture(desktopSize));
    desktop.pointer().moveTo({2600, 300});

    // What it comes to look like.
    desktop.startProgram();
    std::this_thread::sleep_for(timeToComeToRest);
    const QImage finished = desktop.waitForStillPicture();
    const QRect column = columnOf(desktop);
    if (column.isEmpty()) {
        throw std::runtime_error("no cards came back");
    }
    print("cards' windows on the screen", QString::number(desktop.panels().size()));
    print("private memory at rest, MiB", QString::number(privateMemory(desktop.program().pid()), 'f', 1));
    print("memory (PSS) at rest, MiB", QString::number(proportionalMemory(desktop.program().pid()), 'f', 1));
    desktop.quitProgram();

    Samples bound;
    Samples painted;
    Samples away;
    for (int round = 0; round < rounds; ++round) {
        const Clock::time_point start = Clock::now();
        desktop.startProgram();
        bound.values.emplace_back(Clock::now() - start);
        watch.begin(desktop.program().pid());
        waitUntil("the cards", [&] { return differingPixels(desktop.picture(column), finished.copy(column)) == 0; });
        painted.values.emplace_back(Clock::now() - start);
        away.values.push_back(watch.longestAway());
        desktop.quitProgram();
    }
    print("start to hotkeys bound, ms", inMilliseconds(bound));
    print("longest stay of the main thread away after that, ms", inMilliseconds(away));
    print("start to all cards of the column as they stay, ms", inMilliseconds(painted));
}

} // namespace
} // namespace lumenfold::bench

int main(int argc, char **argv)
{
    constexpr int defaultRounds = 5;
    return lumenfold::bench::measureInRounds(argc, argv, defaultRounds, lumenfold::bench::measure);
}
