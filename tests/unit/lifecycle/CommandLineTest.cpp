#include "app/lifecycle/CommandLine.h"

#include <QFile>
#include <QList>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

using Wish = CommandLine::Wish;

TEST(CommandLine, NothingStartsTheProgram)
{
    EXPECT_EQ(parseCommandLine({}), CommandLine{});
}

TEST(CommandLine, AnActionIsAskedForByItsName)
{
    for (const QByteArray action : {"capture-full-screen", "capture-area", "capture-last-area", "settings", "quit"}) {
        EXPECT_EQ(parseCommandLine({action}), (CommandLine{.wish = Wish::action, .action = action}));
        EXPECT_TRUE(commandLineHelp().contains(action));
    }
}

TEST(CommandLine, TellsOfItself)
{
    EXPECT_EQ(parseCommandLine({"--help"}).wish, Wish::help);
    EXPECT_EQ(parseCommandLine({"-h"}).wish, Wish::help);
    EXPECT_EQ(parseCommandLine({"--version"}).wish, Wish::version);
}

TEST(CommandLine, AnythingElseIsMisunderstood)
{
    const QList<QByteArrayList> wrong{{""},
                                      {"capture"},
                                      {"Capture-Area"},
                                      {"--capture-area"},
                                      {"--"},
                                      {"capture-area", "settings"},
                                      {"--help", "more"}};
    for (const QByteArrayList &arguments : wrong) {
        EXPECT_EQ(parseCommandLine(arguments), CommandLine{.wish = Wish::misunderstood})
            << arguments.join(' ').constData();
    }
}

/// The desktop file is written by hand; a launcher reaches the program by what it says.
TEST(CommandLine, TheDesktopFileKnowsTheActions)
{
    QFile file(QStringLiteral(LUMENFOLD_DESKTOP_FILE));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    QByteArrayList offered = commandLineActions();
    offered.removeOne("quit");
    EXPECT_TRUE(text.contains("\nActions=" + offered.join(';') + ";\n"));
    for (const QByteArray &action : offered) {
        EXPECT_TRUE(text.contains("\n[Desktop Action " + action + "]\n")) << action.constData();
        EXPECT_TRUE(text.contains("\nExec=lumenfold " + action + "\n")) << action.constData();
    }
    EXPECT_EQ(text.count("[Desktop Action "), offered.size());
}

} // namespace
} // namespace lumenfold::test
