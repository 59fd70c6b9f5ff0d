#include "platform/autostart/XdgAutostart.h"

#include "platform/image/EncodingPool.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThreadPool>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace lumenfold::test {
namespace {

const QByteArray startingEntry = "[Desktop Entry]\nType=Application\nExec=/bin/true\n";
const QByteArray hiddenEntry = startingEntry + "Hidden=true\n";

class XdgAutostartTest : public ::testing::Test {
protected:
    XdgAutostartTest() { qunsetenv("XDG_CURRENT_DESKTOP"); }
    ~XdgAutostartTest() override { backgroundPool().waitForDone(); }

    [[nodiscard]] QString userFile() const { return m_user + u'/' + XdgAutostart::fileName; }
    [[nodiscard]] QString systemFile() const { return m_system + u'/' + XdgAutostart::fileName; }
    [[nodiscard]] QString lesserSystemFile() const { return m_lesserSystem + u'/' + XdgAutostart::fileName; }

    static void put(const QString &path, const QByteArray &contents)
    {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }
    [[nodiscard]] static QByteArray contents(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }

    void set(bool enabled)
    {
        const auto done = m_autostart.setEnabled(enabled);
        EXPECT_TRUE(done) << qPrintable(done.error().description);
        EXPECT_EQ(m_autostart.isEnabled(), enabled);
    }

    QTemporaryDir m_folder;
    const QString m_user = m_folder.filePath(QStringLiteral("user/autostart"));
    const QString m_system = m_folder.filePath(QStringLiteral("system/autostart"));
    const QString m_lesserSystem = m_folder.filePath(QStringLiteral("lesser/autostart"));
    XdgAutostart m_autostart{{.ofUser = m_user, .ofSystem = {m_system, m_lesserSystem}}, QStringLiteral("/bin/true")};
};

TEST_F(XdgAutostartTest, IsOffUntilItIsSwitchedOn)
{
    EXPECT_FALSE(m_autostart.isEnabled());
    EXPECT_TRUE(m_autostart.setEnabled(false));
    EXPECT_FALSE(QFile::exists(m_user)) << "nothing is written without need";
    set(true);
    EXPECT_TRUE(contents(userFile()).contains("\nExec=\"/bin/true\"\n"));
    set(false);
    EXPECT_FALSE(QFile::exists(userFile()));
}

TEST_F(XdgAutostartTest, AnEntryThatStartsStaysAsTheUserHasIt)
{
    const QByteArray own = startingEntry + "X-Own=1\n";
    put(userFile(), own);
    EXPECT_TRUE(m_autostart.setEnabled(true));
    EXPECT_EQ(contents(userFile()), own);
}

TEST_F(XdgAutostartTest, AnEntryThatAnotherToolSwitchedOffIsSwitchedOn)
{
    put(userFile(), startingEntry + "X-GNOME-Autostart-enabled=false\n");
    EXPECT_FALSE(m_autostart.isEnabled());
    set(true);
}

TEST_F(XdgAutostartTest, TheSystemsEntryIsOverriddenAndNeverTouched)
{
    put(systemFile(), startingEntry);
    EXPECT_TRUE(m_autostart.isEnabled());
    set(false);
    EXPECT_TRUE(contents(userFile()).contains("\nHidden=true\n"));
    set(true);
    EXPECT_FALSE(QFile::exists(userFile())) << "the system's is enough";
    EXPECT_EQ(contents(systemFile()), startingEntry);
}

TEST_F(XdgAutostartTest, TheFirstOfTheSystemsEntriesCounts)
{
    put(systemFile(), hiddenEntry);
    put(lesserSystemFile(), startingEntry);
    EXPECT_FALSE(m_autostart.isEnabled());
    set(true);
    set(false);
    EXPECT_FALSE(QFile::exists(userFile()));
    QFile::remove(systemFile());
    EXPECT_TRUE(m_autostart.isEnabled());
}

TEST_F(XdgAutostartTest, WhatIsBrokenStartsNothingAndIsReplaced)
{
    for (const QByteArray &broken : {QByteArray("\xff\xfe nonsense"), QByteArray(), QByteArray(200'000, '[')}) {
        put(userFile(), broken);
        EXPECT_FALSE(m_autostart.isEnabled());
        set(true);
        QFile::remove(userFile());
    }
    ASSERT_TRUE(QFile::link(QStringLiteral("/nowhere/at/all"), userFile()));
    put(systemFile(), startingEntry);
    EXPECT_FALSE(m_autostart.isEnabled()) << "the link stands before the system's entry";
    set(true);
}

TEST_F(XdgAutostartTest, APipeIsNotWaitedFor)
{
    ASSERT_TRUE(QDir().mkpath(m_user));
    ASSERT_EQ(mkfifo(QFile::encodeName(userFile()).constData(), 0600), 0);
    EXPECT_FALSE(m_autostart.isEnabled());
    set(true);
}

TEST_F(XdgAutostartTest, WhatCannotBeChangedIsToldAndStaysAsItWas)
{
    ASSERT_TRUE(QDir().mkpath(userFile() + QStringLiteral("/a folder in place of the file")));
    const auto done = m_autostart.setEnabled(true);
    ASSERT_FALSE(done);
    EXPECT_EQ(done.error().domain, u"autostart");
    EXPECT_TRUE(done.error().description.contains(userFile()));
    EXPECT_FALSE(m_autostart.isEnabled());

    XdgAutostart nowhere({.ofUser = QStringLiteral("/proc/nowhere/autostart"), .ofSystem = {}},
                         QStringLiteral("/bin/true"));
    EXPECT_FALSE(nowhere.setEnabled(true));
    EXPECT_FALSE(nowhere.isEnabled());
}

TEST_F(XdgAutostartTest, TheFoldersAreThoseOfTheEnvironment)
{
    qputenv("XDG_CONFIG_HOME", "/home/someone/settings");
    qputenv("XDG_CONFIG_DIRS", "/etc/first:/etc/second");
    const XdgAutostart::Folders folders = XdgAutostart::standardFolders();
    EXPECT_EQ(folders.ofUser, u"/home/someone/settings/autostart");
    EXPECT_EQ(folders.ofSystem,
              QStringList({QStringLiteral("/etc/first/autostart"), QStringLiteral("/etc/second/autostart")}));
    qunsetenv("XDG_CONFIG_HOME");
    qunsetenv("XDG_CONFIG_DIRS");
}

TEST_F(XdgAutostartTest, AProgramInAnImageIsStartedByItsImage)
{
    EXPECT_EQ(XdgAutostart::presentProgram(), QCoreApplication::applicationFilePath());
    qputenv("APPIMAGE", "/home/someone/LumenFold.AppImage");
    EXPECT_EQ(XdgAutostart::presentProgram(), u"/home/someone/LumenFold.AppImage");
    qunsetenv("APPIMAGE");
}

} // namespace
} // namespace lumenfold::test
