#include "platform/mainqueue/QtMainQueue.h"

#include <QCoroTask>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QStringList>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>
#include <thread>

using namespace std::chrono_literals;

namespace lumenfold::test {
namespace {

/// Runs the event loop until the condition holds; false when it does not within five seconds.
template <typename Condition>
bool waitUntil(Condition condition)
{
    const QDeadlineTimer deadline(5s);
    // Ends the wait for events now and then, so that the condition is looked at.
    QTimer tick;
    tick.start(5);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

TEST(QtMainQueue, PostedWorkRunsLaterInOrder)
{
    QtMainQueue queue;
    QStringList ran;
    queue.post([&] { ran.append(QStringLiteral("a")); });
    queue.post([&] { ran.append(QStringLiteral("b")); });
    EXPECT_TRUE(ran.isEmpty());
    EXPECT_TRUE(waitUntil([&] { return ran.size() == 2; }));
    EXPECT_EQ(ran.join(u' '), u"a b");
}

TEST(QtMainQueue, WorkPostedByWorkRunsInALaterTurn)
{
    QtMainQueue queue;
    QStringList ran;
    queue.post([&] {
        queue.post([&] { ran.append(QStringLiteral("inner")); });
        ran.append(QStringLiteral("outer"));
    });
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(ran.join(u' '), u"outer");
    EXPECT_TRUE(waitUntil([&] { return ran.size() == 2; }));
}

TEST(QtMainQueue, DelaysAreNeverCutShort)
{
    QtMainQueue queue;
    for (const auto delay : {1ms, 7ms, 60ms, 120ms}) {
        QElapsedTimer elapsed;
        elapsed.start();
        qint64 nanoseconds = -1;
        queue.after(delay, [&] { nanoseconds = elapsed.nsecsElapsed(); });
        ASSERT_TRUE(waitUntil([&] { return nanoseconds >= 0; }));
        EXPECT_GE(nanoseconds, std::chrono::nanoseconds(delay).count());
    }
}

TEST(QtMainQueue, EqualDelaysKeepTheOrderOfAskingAndShorterOnesGoFirst)
{
    QtMainQueue queue;
    QStringList ran;
    queue.after(40ms, [&] { ran.append(QStringLiteral("late")); });
    for (int i = 0; i < 5; ++i) {
        queue.after(20ms, [&ran, i] { ran.append(QString::number(i)); });
    }
    queue.after(-5ms, [&] { ran.append(QStringLiteral("now")); });
    ASSERT_TRUE(waitUntil([&] { return ran.size() == 7; }));
    EXPECT_EQ(ran.join(u' '), u"now 0 1 2 3 4 late");
}

TEST(QtMainQueue, CancelledWorkDoesNotRunAndIsLetGoOf)
{
    QtMainQueue queue;
    bool ran = false;
    bool isOver = false;
    auto held = std::make_shared<int>(0);
    const auto work = queue.after(5ms, [&ran, held] { ran = true; });
    EXPECT_EQ(held.use_count(), 2);
    work->cancel();
    work->cancel();
    EXPECT_EQ(held.use_count(), 1);
    queue.after(10ms, [&] { isOver = true; });
    ASSERT_TRUE(waitUntil([&] { return isOver; }));
    EXPECT_FALSE(ran);
}

TEST(QtMainQueue, WorkMayCallOffOtherWorkThatIsDue)
{
    QtMainQueue queue;
    bool ran = false;
    bool isOver = false;
    std::shared_ptr<ScheduledWork> second;
    queue.post([&] { second->cancel(); });
    second = queue.after(0ms, [&] { ran = true; });
    queue.post([&] { isOver = true; });
    ASSERT_TRUE(waitUntil([&] { return isOver; }));
    EXPECT_FALSE(ran);
}

TEST(QtMainQueue, AHandleThatIsDroppedLeavesTheWorkScheduled)
{
    QtMainQueue queue;
    bool ran = false;
    queue.after(1ms, [&] { ran = true; }).reset();
    EXPECT_TRUE(waitUntil([&] { return ran; }));
}

TEST(QtMainQueue, OtherThreadsMayAskForWork)
{
    QtMainQueue queue;
    QStringList ran;
    const QThread *const mainThread = QThread::currentThread();
    std::thread other([&] {
        queue.after(1ms, [&] { ran.append(QStringLiteral("late")); });
        queue.post([&] {
            EXPECT_EQ(QThread::currentThread(), mainThread);
            ran.append(QStringLiteral("posted"));
        });
    });
    EXPECT_TRUE(waitUntil([&] { return ran.size() == 2; }));
    other.join();
    // Which is first depends on how long the other thread took between the two.
    ran.sort();
    EXPECT_EQ(ran.join(u' '), u"late posted");
}

TEST(QtMainQueue, AnEventLoopInsideWorkServesTheRest)
{
    QtMainQueue queue;
    QStringList ran;
    queue.post([&] {
        QEventLoop inner;
        queue.after(1ms, [&] { inner.quit(); });
        inner.exec();
        ran.append(QStringLiteral("outer"));
    });
    queue.post([&] { ran.append(QStringLiteral("next")); });
    EXPECT_TRUE(waitUntil([&] { return ran.size() == 2; }));
    EXPECT_EQ(ran.join(u' '), u"next outer");
}

TEST(QtMainQueue, WorkDoesNotOutliveTheQueue)
{
    bool ran = false;
    auto held = std::make_shared<int>(0);
    std::shared_ptr<ScheduledWork> work;
    {
        QtMainQueue queue;
        work = queue.after(0ms, [&ran, held] { ran = true; });
    }
    EXPECT_EQ(held.use_count(), 1);
    work->cancel();
    QCoreApplication::processEvents();
    EXPECT_FALSE(ran);
}

TEST(QtMainQueue, ACoroutineSleeps)
{
    QtMainQueue queue;
    QElapsedTimer elapsed;
    elapsed.start();
    bool isDone = false;
    const auto sleeper = [&]() -> QCoro::Task<> {
        co_await queue.sleep(20ms);
        isDone = true;
    };
    const QCoro::Task<> task = sleeper();
    EXPECT_TRUE(waitUntil([&] { return isDone; }));
    EXPECT_GE(elapsed.elapsed(), 20);
}

} // namespace
} // namespace lumenfold::test
