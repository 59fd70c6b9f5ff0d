#include "tests/components/keyboard/RouterTest.h"

#include "tests/support/desktop/Process.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/unit/LogWatch.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <csignal>
#include <optional>

namespace lumenfold::test {
namespace {

class RouterFailures : public RouterTest {};

/// How often the router's thread has gone to sleep so far; nothing when there is no such thread.
std::optional<qint64> sleepsOfTheRouterThread()
{
    const QDir threads(QStringLiteral("/proc/self/task"));
    for (const QString &thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile status(threads.filePath(thread + QStringLiteral("/status")));
        if (!status.open(QIODevice::ReadOnly)) {
            continue;
        }
        const QByteArray text = status.readAll();
        const QByteArray count = "\nvoluntary_ctxt_switches:\t";
        if (const auto found = text.indexOf(count); text.startsWith("Name:\tkeyboard\n") && found >= 0) {
            const auto start = found + count.size();
            return text.mid(start, text.indexOf('\n', start) - start).toLongLong();
        }
    }
    return std::nullopt;
}

TEST_F(RouterFailures, TheNextKeyWorksAfterTheProgramIsKilledWithAKeyHeld)
{
    QTemporaryDir folder;
    Process program({.program = QStringLiteral(LUMENFOLD_STUCK_PROGRAM),
                     .environment = m_server.clientEnvironment(),
                     .logFile = folder.filePath(QStringLiteral("log"))});
    ASSERT_TRUE(waitFor([&] { return program.log().contains("ready"); }));
    m_keyboard.down("Super");
    m_keyboard.down("Alt");
    m_keyboard.down("1");
    ASSERT_TRUE(waitFor([&] { return program.log().contains("asked"); }));
    program.sendSignal(SIGKILL);
    EXPECT_EQ(program.waitForExit(), (Process::Exit{.status = -1, .signal = SIGKILL}));
    m_keyboard.up("1");
    m_keyboard.up("Alt");
    m_keyboard.up("Super");
    m_keyboard.press("a");
    EXPECT_TRUE(waitFor([&] { return typed().endsWith(QLatin1Char('a')); }));

    EXPECT_EQ(registerHotKey(1), noHotKeyError) << "and the combination is free";
    m_keyboard.press("Super+Alt+1");
    EXPECT_TRUE(waitForPress(1));
}

TEST_F(RouterFailures, RestsWhileNothingHappens)
{
    ASSERT_EQ(registerHotKey(1), noHotKeyError);
    const auto tap = watchingTap(TapScope::hotKeys, TapDisposition::swallow);
    m_keyboard.press("Super+Alt+1");
    ASSERT_TRUE(waitFor([&] { return m_seen.size() == 1; }));
    m_keyboard.press("a");
    ASSERT_TRUE(waitForTyped(QStringLiteral("a")));
    // The keyboard's map is looked at once more after the first key of a new device.
    ASSERT_FALSE(staysTrue([] { return false; }, std::chrono::milliseconds(1)));
    std::optional<qint64> before;
    EXPECT_TRUE(waitFor([&] {
        before = sleepsOfTheRouterThread();
        return before && staysTrue([&] { return sleepsOfTheRouterThread() == before; }, std::chrono::milliseconds(500));
    }));
}

TEST(KeyboardRouter, DoesNotStartWithoutAServer)
{
    EXPECT_EQ(x11::X11KeyboardRouter::start(QByteArrayLiteral(":4093")), nullptr);
    EXPECT_EQ(x11::X11KeyboardRouter::start(QByteArrayLiteral("no display")), nullptr);
}

TEST(KeyboardRouter, FailsWithAStatusWhenTheServerGoesAway)
{
    auto server = std::make_unique<XServer>();
    const auto router = x11::X11KeyboardRouter::start(server->display());
    ASSERT_TRUE(router);
    auto hotKey = router->hotKeys().registerHotKey(keyCodes::digit1, optionCommand, {});
    ASSERT_EQ(hotKey.status, noHotKeyError);
    auto tap =
        router->taps().createTap(TapScope::wholeKeyboard, [](const KeyEvent &) { return TapDisposition::passOn; });
    ASSERT_TRUE(tap);
    tap->enable();

    const QString line = QStringLiteral("LumenFold: lost the keyboard; hotkeys do not work any more");
    expectLogLine(line);
    server.reset();
    EXPECT_TRUE(waitFor([&] { return logLines().contains(line); }));
    EXPECT_EQ(router->hotKeys().registerHotKey(keyCodes::digit2, optionCommand, {}).status, hotKeyInvalidError);
    EXPECT_EQ(router->taps().createTap(TapScope::hotKeys, [](const KeyEvent &) { return TapDisposition::passOn; }),
              nullptr);
    tap->enable();
    tap.reset();
    hotKey.ref.reset();
}

} // namespace
} // namespace lumenfold::test
