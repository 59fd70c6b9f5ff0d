/// Actions of the command line, which launchers use that cannot reach the program on the session bus.
#include "tests/support/desktop/DesktopTest.h"

namespace lumenfold::test {
namespace {

class CommandLineActions : public DesktopTest {
protected:
    [[nodiscard]] static std::unique_ptr<Process> call(Desktop &desktop, const QStringList &arguments)
    {
        return std::make_unique<Process>(ProcessOptions{.program = programPath(),
                                                        .arguments = arguments,
                                                        .environment = desktop.environment(),
                                                        .logFile = desktop.folders().path("called.log")});
    }
};

TEST_F(CommandLineActions, ReachTheOneThatRuns)
{
    Desktop &desktop = start();
    // It has its name on the bus a moment after its hotkeys.
    EXPECT_TRUE(waitFor([&] {
        return call(desktop, {QStringLiteral("capture-full-screen")})->waitForExit() == Process::Exit{.status = 0};
    }));
    desktop.waitForClipboard();
    EXPECT_FALSE(desktop.clipboardPicture().isNull());
    desktop.waitForPanels(1);

    EXPECT_EQ(call(desktop, {QStringLiteral("quit")})->waitForExit(), Process::Exit{.status = 0});
    EXPECT_EQ(desktop.program().waitForExit(), Process::Exit{.status = 0});
}

TEST_F(CommandLineActions, WithoutOneThatRunsItIsStarted)
{
    Desktop &desktop = prepare();
    const auto program = call(desktop, {QStringLiteral("capture-full-screen")});
    EXPECT_TRUE(waitFor([&] { return desktop.clipboard().ownerChanges() > 0; }));
    EXPECT_TRUE(waitFor([&] { return !desktop.clipboardPicture().isNull(); }));
    EXPECT_TRUE(program->isRunning());
    EXPECT_EQ(call(desktop, {QStringLiteral("quit")})->waitForExit(), Process::Exit{.status = 0});
    EXPECT_EQ(program->waitForExit(), Process::Exit{.status = 0});
    // Nothing runs any more, and nothing is started in order to be ended.
    EXPECT_EQ(call(desktop, {QStringLiteral("quit")})->waitForExit(), Process::Exit{.status = 0});
}

TEST_F(CommandLineActions, WhatMakesNoSenseStartsNothing)
{
    Desktop &desktop = prepare();
    EXPECT_EQ(call(desktop, {QStringLiteral("capture")})->waitForExit(), Process::Exit{.status = 2});
    const auto help = call(desktop, {QStringLiteral("--help")});
    EXPECT_EQ(help->waitForExit(), Process::Exit{.status = 0});
    EXPECT_TRUE(help->log().startsWith("usage: lumenfold"));
    EXPECT_EQ(call(desktop, {QStringLiteral("--version")})->waitForExit(), Process::Exit{.status = 0});
}

} // namespace
} // namespace lumenfold::test
