#pragma once

#include <QString>
#include <QStringList>

/// The log as the tests see it: every message of level warning or above that no test has named fails the test in which
/// it is written.
namespace lumenfold::test {

/// Called once by the main function of a test program.
void installLogWatch();

/// Names a line that the present test expects, exactly as it stands in the log. The test fails at its end unless the
/// line was written that many times.
void expectLogLine(const QString &line, int times = 1);

/// Every line written in the present test so far, of any level.
[[nodiscard]] QStringList logLines();

} // namespace lumenfold::test
