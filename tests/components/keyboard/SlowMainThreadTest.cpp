#include "tests/components/keyboard/RouterTest.h"

#include "tests/support/desktop/Wait.h"

#include <QThread>

#include <chrono>
#include <future>
#include <thread>

namespace lumenfold::test {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

/// The main thread, which is the test's own, answers late or not at all.
class SlowMainThread : public RouterTest {
protected:
    /// Waits until what has been typed begins with the text; no event of the main thread runs meanwhile.
    [[nodiscard]] bool typedWhileStuck(const QString &text, std::chrono::milliseconds timeout)
    {
        const auto deadline = Clock::now() + timeout;
        while (!typed().startsWith(text) && Clock::now() < deadline) {
            QThread::msleep(1);
        }
        return typed().startsWith(text);
    }
};

TEST_F(SlowMainThread, APressThatNobodyAnswersReachesTheFrontWindow)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    auto tap = watchingTap(TapScope::hotKeys, TapDisposition::swallow);

    const Clock::time_point start = Clock::now();
    m_keyboard.press("Super+Alt+1");
    m_keyboard.press("a");
    EXPECT_TRUE(typedWhileStuck(QStringLiteral("1 a"), 500ms));
    EXPECT_GE(Clock::now() - start, 240ms) << "the tap had its time";

    EXPECT_TRUE(waitFor([&] { return !m_seen.empty(); }));
    ASSERT_EQ(m_seen.size(), 1u) << "only the notice: the question is no longer open";
    EXPECT_EQ(m_seen[0].type, KeyEventType::tapDisabledByTimeout);

    m_seen.clear();
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitForPress(1)) << "the hotkey serves while the tap is disabled";
    EXPECT_TRUE(m_seen.empty());

    tap->enable();
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitFor([&] { return m_seen.size() == 1; }));
    EXPECT_EQ(typedBeforeMarker(), QStringLiteral("1 a"));
    EXPECT_EQ(pressed(1), 1);
}

TEST_F(SlowMainThread, AHandlerThatTakesTooLongLosesThePress)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    std::promise<bool> reachedFront;
    std::vector<KeyEventType> seen;
    std::unique_ptr<KeyEventTap> tap;
    tap = m_router->taps().createTap(TapScope::hotKeys, [&](const KeyEvent &event) {
        seen.push_back(event.type);
        if (event.type == KeyEventType::tapDisabledByTimeout) {
            tap->enable();
            return TapDisposition::passOn;
        }
        if (seen.size() == 1) {
            reachedFront.set_value(typedWhileStuck(QStringLiteral("1"), 500ms));
        }
        return TapDisposition::swallow;
    });
    tap->enable();
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitFor([&] { return seen.size() == 2; }));
    EXPECT_TRUE(reachedFront.get_future().get());
    EXPECT_EQ(seen[1], KeyEventType::tapDisabledByTimeout);

    // Enabled again inside the notice, as the hotkey manager does.
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitFor([&] { return seen.size() == 3; }));
    EXPECT_EQ(seen[2], KeyEventType::keyDown);
    EXPECT_EQ(typedBeforeMarker(), QStringLiteral("1"));
    EXPECT_EQ(pressed(1), 0);
}

TEST_F(SlowMainThread, OnlyTheSlowTapIsDisabled)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    const auto quick = watchingTap(TapScope::hotKeys, TapDisposition::swallow);
    bool slowWasTold = false;
    const auto slow = m_router->taps().createTap(TapScope::hotKeys, [&](const KeyEvent &event) {
        if (event.type == KeyEventType::tapDisabledByTimeout) {
            slowWasTold = true;
        } else {
            QThread::msleep(300);
        }
        return TapDisposition::passOn;
    });
    slow->enable();
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitFor([&] { return slowWasTold; }));
    EXPECT_TRUE(m_seen.empty()) << "the press was gone before the second tap's turn";
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitFor([&] { return m_seen.size() == 1; }));
    EXPECT_EQ(m_seen[0].type, KeyEventType::keyDown);
}

TEST_F(SlowMainThread, ALateAnswerThatIsInTimeCounts)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    int asked = 0;
    const auto tap = m_router->taps().createTap(TapScope::hotKeys, [&](const KeyEvent &) {
        QThread::msleep(100);
        ++asked;
        return TapDisposition::swallow;
    });
    tap->enable();
    m_keyboard.press("Super+Alt+1");
    m_keyboard.press("a");
    EXPECT_TRUE(waitFor([&] { return asked == 1; }));
    EXPECT_EQ(typedBeforeMarker(), QStringLiteral("a"));
}

TEST_F(SlowMainThread, AHeldKeyThatWasGivenBackDoesNotFireLater)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    auto tap = watchingTap(TapScope::hotKeys, TapDisposition::swallow);
    m_keyboard.down("Super");
    m_keyboard.down("Alt");
    m_keyboard.down("1");
    // It repeats in the front window, as any key does that nobody takes.
    EXPECT_TRUE(typedWhileStuck(QStringLiteral("1 1 1 1 1 1"), 2000ms));
    EXPECT_TRUE(waitFor([&] { return !m_seen.empty(); }));
    EXPECT_EQ(m_seen.at(0).type, KeyEventType::tapDisabledByTimeout);
    const auto before = typed().size();
    EXPECT_TRUE(waitFor([&] { return typed().size() > before + 5; })) << "whoever answers now";
    m_keyboard.up("1");
    EXPECT_EQ(pressed(1), 0);

    tap.reset();
    settle();
    m_keyboard.down("1");
    EXPECT_TRUE(waitForPress(1)) << "pressed again, it is a hotkey again";
    m_keyboard.up("1");
    m_keyboard.up("Alt");
    m_keyboard.up("Super");
}

TEST_F(SlowMainThread, TheHotkeyAloneNeverWaits)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    m_keyboard.press("Super+Alt+1");
    m_keyboard.press("a");
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(typedWhileStuck(QStringLiteral("a"), 500ms));
    EXPECT_EQ(pressed(1), 0) << "the events of this thread have not run";
    EXPECT_TRUE(waitForPress(1, 2));
}

TEST_F(SlowMainThread, TheRouterMayGoWhileAPressIsPending)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    const auto tap = watchingTap(TapScope::hotKeys, TapDisposition::swallow);
    m_keyboard.press("Super+Alt+1");
    m_router.reset();
    m_keyboard.press("a");
    EXPECT_TRUE(waitForTyped(QStringLiteral("1 a"))) << typed().toStdString();
    EXPECT_TRUE(m_seen.empty());
}

} // namespace
} // namespace lumenfold::test
