#include "platform/autostart/AutostartEntry.h"

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

using autostartEntry::Session;

bool starts(const QByteArray &contents, const QStringList &desktops = {QStringLiteral("GNOME")})
{
    return autostartEntry::starts(contents, {.desktops = desktops, .isInstalled = [](const QString &program) {
                                                 return program == u"/opt/with space/program";
                                             }});
}

const QByteArray entry = "[Desktop Entry]\nType=Application\nExec=program\n";

TEST(AutostartEntryTest, AnEntryStartsUnlessItSaysOtherwise)
{
    EXPECT_TRUE(starts(entry));
    EXPECT_TRUE(starts(" # a comment\r\n\r\n[Desktop Entry]\r\nType = Application\r\nExec = program\r\n"));
    EXPECT_TRUE(starts(entry + "Hidden=false\nX-GNOME-Autostart-enabled=true\n"));
    EXPECT_FALSE(starts(entry + "Hidden=true\n"));
    EXPECT_FALSE(starts(entry + "X-GNOME-Autostart-enabled=false\n"));
}

TEST(AutostartEntryTest, OnlyItsOwnGroupCounts)
{
    EXPECT_TRUE(starts(entry + "[Desktop Action quit]\nHidden=true\n"));
    EXPECT_FALSE(starts("[Another]\nType=Application\nExec=program\n"));
    EXPECT_FALSE(starts("Type=Application\nExec=program\n"));
}

TEST(AutostartEntryTest, WhatIsNoEntryStartsNothing)
{
    for (const QByteArray &contents :
         {QByteArray(), QByteArray("nonsense"), QByteArray("[Desktop Entry]"), QByteArray("[Desktop Entry]\n=\n==\n\\"),
          QByteArray("\xff\xfe\x00[", 4), QByteArray("[Desktop Entry]\nType=Application\nExec=\n"),
          QByteArray("[Desktop Entry]\nType=Link\nExec=program\n"), QByteArray("[Desktop Entry]\nExec=program\n")}) {
        EXPECT_FALSE(starts(contents)) << contents.constData();
    }
}

TEST(AutostartEntryTest, DesktopsThatItIsNotForDoNotStartIt)
{
    EXPECT_FALSE(starts(entry + "OnlyShowIn=KDE;XFCE;\n"));
    EXPECT_TRUE(starts(entry + "OnlyShowIn=KDE;GNOME;\n"));
    EXPECT_TRUE(starts(entry + "OnlyShowIn=KDE;GNOME;\n", {QStringLiteral("ubuntu"), QStringLiteral("GNOME")}));
    EXPECT_FALSE(starts(entry + "NotShowIn=GNOME;\n"));
    EXPECT_TRUE(starts(entry + "NotShowIn=KDE\n"));
}

TEST(AutostartEntryTest, AProgramThatIsGoneIsNotStarted)
{
    EXPECT_FALSE(starts(entry + "TryExec=/opt/gone\n"));
    EXPECT_TRUE(starts(entry + "TryExec=/opt/with\\sspace/program\n"));
}

TEST(AutostartEntryTest, TheEntryThatIsWrittenStartsTheProgramWhateverItsPath)
{
    const QByteArray plain = autostartEntry::starting(QStringLiteral("/opt/with space/program"),
                                                      QStringLiteral("LumenFold"), QStringLiteral("icon"));
    EXPECT_EQ(plain, "[Desktop Entry]\nType=Application\nName=LumenFold\nIcon=icon\n"
                     "Exec=\"/opt/with space/program\"\nTryExec=/opt/with space/program\n"
                     "X-GNOME-Autostart-enabled=true\n");
    EXPECT_TRUE(starts(plain));

    const QByteArray odd = autostartEntry::starting(QStringLiteral("/a\"b$c`d\\e%f"), {}, {});
    // Once for the quotes, once for the value.
    EXPECT_TRUE(odd.contains("\nExec=\"/a\\\\\"b\\\\$c\\\\`d\\\\\\\\e%%f\"\n")) << odd.constData();
    EXPECT_TRUE(odd.contains("\nTryExec=/a\"b$c`d\\\\e%f\n")) << odd.constData();
    // No path brings a key of its own.
    EXPECT_FALSE(autostartEntry::starting(QStringLiteral("/a\nHidden=true"), {}, {}).contains("\nHidden"));
}

TEST(AutostartEntryTest, TheEntryThatStartsNothingStartsNothing)
{
    EXPECT_FALSE(starts(autostartEntry::startingNothing(QStringLiteral("LumenFold"))));
}

} // namespace
} // namespace lumenfold::test
