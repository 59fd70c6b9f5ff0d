#pragma once

#include "bench/whole_program/Timing.h"
#include "tests/support/desktop/Desktop.h"

#include <optional>

/// Other programs on the same desktop, so that figures from different machines can be told apart.
namespace lumenfold::bench {

/// From the start of a program that captures the screen into a file to its end, with the whole file there; without the
/// program's first run, which fills caches. Nothing when it is not installed. Throws std::runtime_error when it fails.
/// `%f` among the arguments stands for the file.
[[nodiscard]] std::optional<Samples> timeOfCapturingProgram(const test::Desktop &desktop, const QString &program,
                                                            const QStringList &arguments, int rounds);

/// The figures of a program that waits in the background.
struct Resident {
    double mebibytes = 0;
    double wakeUpsPerSecond = 0;
};

/// Nothing when it is not installed. The program is given time to settle first.
[[nodiscard]] std::optional<Resident> residentFigures(const test::Desktop &desktop, const QString &program,
                                                      std::chrono::seconds period);

} // namespace lumenfold::bench
