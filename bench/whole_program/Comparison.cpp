#include "bench/whole_program/Comparison.h"

#include "bench/whole_program/ProcessFigures.h"

#include <QFileInfo>
#include <QImageReader>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <stdexcept>
#include <thread>

namespace lumenfold::bench {
namespace {

constexpr std::chrono::seconds settling{5};

} // namespace

std::optional<Samples> timeOfCapturingProgram(const test::Desktop &desktop, const QString &program,
                                              const QStringList &arguments, int rounds)
{
    if (QStandardPaths::findExecutable(program).isEmpty()) {
        return std::nullopt;
    }
    const QTemporaryDir folder;
    Samples samples;
    for (int round = 0; round <= rounds; ++round) {
        const QString file = folder.filePath(QStringLiteral("%1.png").arg(round));
        QStringList itsArguments = arguments;
        itsArguments.replaceInStrings(QStringLiteral("%f"), file);
        const Clock::time_point start = Clock::now();
        test::Process process({.program = program, .arguments = itsArguments, .environment = desktop.environment()});
        if (process.waitForExit(std::chrono::seconds(60)) != test::Process::Exit{.status = 0}) {
            throw std::runtime_error(program.toStdString() + " failed");
        }
        const Milliseconds took = Clock::now() - start;
        if (QImageReader(file).size() != desktop.connection().frameOf(desktop.connection().root()).size()) {
            throw std::runtime_error(program.toStdString() + " left no picture of the whole screen");
        }
        if (round > 0) {
            samples.values.push_back(took);
        }
    }
    return samples;
}

std::optional<Resident> residentFigures(const test::Desktop &desktop, const QString &program,
                                        std::chrono::seconds period)
{
    if (QStandardPaths::findExecutable(program).isEmpty()) {
        return std::nullopt;
    }
    test::Process process({.program = program, .environment = desktop.environment()});
    std::this_thread::sleep_for(settling);
    if (!process.isRunning()) {
        throw std::runtime_error(program.toStdString() + " did not stay");
    }
    const double wakeUps = wakeUpsPerSecond(process.pid(), period);
    return Resident{.mebibytes = proportionalMemory(process.pid()), .wakeUpsPerSecond = wakeUps};
}

} // namespace lumenfold::bench
