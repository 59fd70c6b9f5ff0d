#include "platform/defaults/SettingsFile.h"

#include "tests/unit/defaults/SettingsTestFiles.h"

#include <QFileInfo>

#include <sys/stat.h>

#include <cstdio>

namespace lumenfold::test {
namespace {

using SettingsFileTest = SettingsTestFiles;

TEST_F(SettingsFileTest, AMissingFileIsEmpty)
{
    SettingsFile file(path());
    EXPECT_EQ(file.read(), QByteArray());
    SettingsFile nowhere(m_folder.filePath(QStringLiteral("no/such/folder/a.conf")));
    EXPECT_EQ(nowhere.read(), QByteArray());
}

TEST_F(SettingsFileTest, EveryChangeIsSeenByTheNextReadHoweverQuick)
{
    SettingsFile file(path());
    for (int round = 0; round < 200; ++round) {
        // Always the same size, in the same place, within the resolution of the file system's clock.
        const QByteArray contents = QByteArray::number(100 + round);
        putFile(contents);
        ASSERT_EQ(file.read(), contents);
    }
    QFile::remove(path());
    EXPECT_EQ(file.read(), QByteArray());
}

TEST_F(SettingsFileTest, AFileThatWasPutInPlaceOfTheOldOneIsSeen)
{
    SettingsFile file(path());
    for (int round = 0; round < 50; ++round) {
        const QByteArray contents = QByteArray::number(100 + round);
        const QString other = m_folder.filePath(QStringLiteral("other"));
        QFile writer(other);
        ASSERT_TRUE(writer.open(QIODevice::WriteOnly));
        writer.write(contents);
        writer.close();
        ASSERT_EQ(std::rename(QFile::encodeName(other).constData(), QFile::encodeName(path()).constData()), 0);
        ASSERT_EQ(file.read(), contents);
    }
}

TEST_F(SettingsFileTest, ReplacingMakesTheFolderAndAFileForTheUserAlone)
{
    const QString deep = m_folder.filePath(QStringLiteral("config/LumenFold/LumenFold.conf"));
    SettingsFile file(deep);
    ASSERT_TRUE(file.replace("a=1\n"));
    EXPECT_EQ(file.read(), QByteArray("a=1\n"));
    EXPECT_EQ(QFileInfo(deep).permissions() & ~(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser),
              QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_EQ(QFileInfo(deep).dir().entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST_F(SettingsFileTest, ReplacingThroughALinkKeepsTheLink)
{
    const QString target = m_folder.filePath(QStringLiteral("dotfiles.conf"));
    ASSERT_TRUE(QFile::link(target, path()));
    SettingsFile file(path());
    ASSERT_TRUE(file.replace("a=1\n"));
    EXPECT_TRUE(QFileInfo(path()).isSymLink());
    EXPECT_TRUE(QFileInfo(target).exists());
    EXPECT_EQ(file.read(), QByteArray("a=1\n"));
}

TEST_F(SettingsFileTest, WhatIsNoFileCannotBeRead)
{
    SettingsFile folder(m_folder.path());
    EXPECT_EQ(folder.read().error(), QStringLiteral("Not a file"));

    // Opening a pipe that nobody writes to would wait for ever.
    ASSERT_EQ(mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
    SettingsFile pipe(path());
    EXPECT_EQ(pipe.read().error(), QStringLiteral("Not a file"));
}

TEST_F(SettingsFileTest, AnEnormousFileIsNotRead)
{
    putFile({});
    ASSERT_TRUE(QFile::resize(path(), qint64(1) << 40));
    SettingsFile file(path());
    EXPECT_EQ(file.read().error(), QStringLiteral("Too large"));
}

TEST_F(SettingsFileTest, AFileThatBecomesReadableAgainIsRead)
{
    SettingsFile file(path());
    ASSERT_TRUE(QDir().mkdir(path()));
    EXPECT_FALSE(file.read());
    ASSERT_TRUE(QDir().rmdir(path()));
    putFile("a=1\n");
    EXPECT_EQ(file.read(), QByteArray("a=1\n"));
}

} // namespace
} // namespace lumenfold::test
