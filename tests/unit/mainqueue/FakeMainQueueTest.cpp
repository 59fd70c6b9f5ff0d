#include "tests/support/fakes/FakeMainQueue.h"

#include <QCoroTask>
#include <QStringList>

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace lumenfold::test {
namespace {

TEST(FakeMainQueue, RunsWorkInTheOrderOfItsTime)
{
    FakeMainQueue queue;
    QStringList ran;
    queue.after(20ms, [&] { ran.append(QStringLiteral("20")); });
    queue.after(10ms, [&] { ran.append(QStringLiteral("10a")); });
    queue.after(10ms, [&] { ran.append(QStringLiteral("10b")); });
    queue.post([&] { ran.append(QStringLiteral("0")); });
    EXPECT_TRUE(ran.isEmpty());
    queue.advance(10ms);
    EXPECT_EQ(ran.join(u' '), u"0 10a 10b");
    queue.advance(9ms);
    EXPECT_EQ(ran.size(), 3);
    queue.advance(1ms);
    EXPECT_EQ(ran.size(), 4);
}

TEST(FakeMainQueue, WorkThatAsksForWorkIsServedOnTheWay)
{
    FakeMainQueue queue;
    std::vector<std::chrono::milliseconds> times;
    queue.after(10ms, [&] {
        times.push_back(queue.now());
        queue.after(10ms, [&] { times.push_back(queue.now()); });
    });
    queue.advance(100ms);
    EXPECT_EQ(times, (std::vector<std::chrono::milliseconds>{10ms, 20ms}));
    EXPECT_EQ(queue.now(), 100ms);
}

TEST(FakeMainQueue, CancelledWorkDoesNotRunAndDoesNotCount)
{
    FakeMainQueue queue;
    bool ran = false;
    const auto work = queue.after(10ms, [&] { ran = true; });
    EXPECT_EQ(queue.pendingDelays(), std::vector{10ms});
    work->cancel();
    EXPECT_EQ(queue.pendingCount(), 0U);
    queue.advance(10ms);
    EXPECT_FALSE(ran);
}

TEST(FakeMainQueue, ACoroutineSleepsUntilTheClockHasMoved)
{
    FakeMainQueue queue;
    bool isDone = false;
    const auto sleeper = [&]() -> QCoro::Task<> {
        co_await queue.sleep(60ms);
        isDone = true;
    };
    const QCoro::Task<> task = sleeper();
    queue.advance(59ms);
    EXPECT_FALSE(isDone);
    queue.advance(1ms);
    EXPECT_TRUE(isDone);
}

} // namespace
} // namespace lumenfold::test
