#include "tests/support/unit/LogWatch.h"

#include <QMap>
#include <QMutex>
#include <QMutexLocker>

#include <gtest/gtest.h>

#include <cstdio>

namespace lumenfold::test {
namespace {

struct Watch {
    QMutex mutex;
    QStringList lines;
    QStringList warnings;
    QMap<QString, int> expected;
};

Watch &watch()
{
    static Watch instance;
    return instance;
}

void keepMessage(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    std::fprintf(stderr, "%s\n", qUtf8Printable(message));
    Watch &log = watch();
    const QMutexLocker lock(&log.mutex);
    log.lines.append(message);
    if (type != QtDebugMsg && type != QtInfoMsg) {
        log.warnings.append(message);
    }
}

class FailOnUnexpectedWarnings : public ::testing::EmptyTestEventListener {
    void OnTestStart(const ::testing::TestInfo &) override
    {
        Watch &log = watch();
        const QMutexLocker lock(&log.mutex);
        log.lines.clear();
        log.warnings.clear();
        log.expected.clear();
    }

    void OnTestEnd(const ::testing::TestInfo &) override
    {
        Watch &log = watch();
        const QMutexLocker lock(&log.mutex);
        for (auto [line, times] : log.expected.asKeyValueRange()) {
            const auto seen = log.lines.count(line);
            if (seen != times) {
                ADD_FAILURE() << "expected " << times << " times in the log, seen " << seen
                              << " times: " << qPrintable(line);
            }
            log.warnings.removeAll(line);
        }
        if (!log.warnings.isEmpty()) {
            ADD_FAILURE() << "unexpected in the log:\n" << qPrintable(log.warnings.join(QLatin1Char('\n')));
        }
    }
};

} // namespace

void installLogWatch()
{
    qInstallMessageHandler(keepMessage);
    ::testing::UnitTest::GetInstance()->listeners().Append(new FailOnUnexpectedWarnings);
}

void expectLogLine(const QString &line, int times)
{
    Watch &log = watch();
    const QMutexLocker lock(&log.mutex);
    log.expected[line] += times;
}

QStringList logLines()
{
    Watch &log = watch();
    const QMutexLocker lock(&log.mutex);
    return log.lines;
}

} // namespace lumenfold::test
