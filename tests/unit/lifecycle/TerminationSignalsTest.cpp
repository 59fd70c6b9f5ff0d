#include "platform/session/TerminationSignals.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace lumenfold::test {
namespace {

class TerminationSignal : public ::testing::TestWithParam<int> {};

TEST_P(TerminationSignal, BecomesACallFromTheEventLoop)
{
    int calls = 0;
    {
        const TerminationSignals signals([&] { ++calls; });
        raise(GetParam());
        EXPECT_EQ(calls, 0);
        const QDeadlineTimer deadline(5000);
        while (calls == 0 && !deadline.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        }
        EXPECT_EQ(calls, 1);
    }
    struct sigaction action = {};
    sigaction(GetParam(), nullptr, &action);
    EXPECT_EQ(action.sa_handler, SIG_DFL);
}

TEST_P(TerminationSignal, TheSecondOneEndsAProcessThatHangs)
{
    const pid_t child = fork();
    if (child == 0) {
        const TerminationSignals signals([] {});
        raise(GetParam());
        raise(GetParam());
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, TerminationSignal, ::testing::Values(SIGTERM, SIGINT, SIGHUP));

} // namespace
} // namespace lumenfold::test
