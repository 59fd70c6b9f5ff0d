#include "platform/files/FileContents.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

namespace lumenfold {
namespace {

using namespace Qt::StringLiterals;

class FileContents : public ::testing::Test {
protected:
    [[nodiscard]] QString path(const char *name) const { return m_folder.filePath(QString::fromLatin1(name)); }
    bool replace(const QByteArray &bytes) { return replaceFile(path("file"), path("scratch"), bytes).has_value(); }
    [[nodiscard]] QStringList names() const
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    QTemporaryDir m_folder;
};

TEST_F(FileContents, comeBackAsTheyWereWritten)
{
    const QByteArray bytes("a\0b", 3);
    ASSERT_TRUE(replace(bytes));
    EXPECT_EQ(readFile(path("file"), 3), bytes);
    ASSERT_TRUE(replace({}));
    EXPECT_EQ(readFile(path("file"), 3), QByteArray());
    EXPECT_EQ(names(), QStringList(u"file"_s));
}

TEST_F(FileContents, areNobodyElsesToRead)
{
    ASSERT_TRUE(replace("secret"));
    EXPECT_EQ(QFile::permissions(path("file")) & ~(QFile::ReadUser | QFile::WriteUser),
              QFile::ReadOwner | QFile::WriteOwner);
}

TEST_F(FileContents, areCopiedWhole)
{
    const QByteArray bytes(3'000'000, 'x');
    ASSERT_TRUE(replace(bytes));
    ASSERT_TRUE(replaceFile(path("copy"), path("scratch"), contentsOf(path("file"))));
    EXPECT_EQ(readFile(path("copy"), bytes.size()), bytes);
    EXPECT_FALSE(replaceFile(path("copy"), path("scratch"), contentsOf(path("missing"))));
    EXPECT_EQ(readFile(path("copy"), bytes.size()), bytes);
}

TEST_F(FileContents, areCopiedToAnotherFileSystemToo)
{
    const QByteArray bytes(3'000'000, 'x');
    ASSERT_TRUE(replace(bytes));
    const QTemporaryDir elsewhere(u"/dev/shm/lumenfold-XXXXXX"_s);
    ASSERT_TRUE(elsewhere.isValid());
    const QString copy = elsewhere.filePath(u"copy"_s);
    ASSERT_TRUE(replaceFile(copy, copy + u".new"_s, contentsOf(path("file"))));
    EXPECT_EQ(readFile(copy, bytes.size()), bytes);
}

TEST_F(FileContents, areNotCopiedWhenTheyBecameFewer)
{
    ASSERT_TRUE(replace("1234"));
    QFile from(path("file"));
    QFile to(path("copy"));
    ASSERT_TRUE(from.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    ASSERT_TRUE(to.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    EXPECT_FALSE(copyBytes(from, 5, to));
}

TEST_F(FileContents, areNotReadBeyondTheLimitNorWhereThereIsNoFile)
{
    ASSERT_TRUE(replace("1234"));
    EXPECT_EQ(readFile(path("file"), 4), "1234");
    EXPECT_FALSE(readFile(path("file"), 3));
    EXPECT_FALSE(readFile(path("missing"), 3));
    EXPECT_FALSE(readFile(m_folder.path(), 3));
    ASSERT_EQ(mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    EXPECT_FALSE(readFile(path("pipe"), 3));
    ASSERT_TRUE(QFile::link(path("missing"), path("link")));
    EXPECT_FALSE(readFile(path("link"), 3));
}

TEST_F(FileContents, replaceWhateverStandsInTheWay)
{
    QFile scratch(path("scratch"));
    ASSERT_TRUE(scratch.open(QIODevice::WriteOnly) && scratch.write("left by a kill") > 0);
    scratch.close();
    ASSERT_TRUE(QFile::link(path("elsewhere"), path("file")));
    ASSERT_TRUE(replace("new"));
    EXPECT_EQ(names(), QStringList(u"file"_s));
    EXPECT_FALSE(QFileInfo(path("file")).isSymLink());

    // A link in place of the scratch file is not followed.
    ASSERT_TRUE(QFile::link(path("elsewhere"), path("scratch")));
    ASSERT_TRUE(replace("newer"));
    EXPECT_EQ(names(), QStringList(u"file"_s));
    EXPECT_EQ(readFile(path("file"), 10), "newer");
}

TEST_F(FileContents, stayWhenTheyCannotBeReplaced)
{
    EXPECT_FALSE(replaceFile(path("missing/file"), path("missing/scratch"), "new"));
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(u"file"_s));
    EXPECT_FALSE(replace("new"));
    EXPECT_EQ(names(), QStringList(u"file"_s));
}

TEST_F(FileContents, stayWhenTheNewOnesGrowTooLong)
{
    ASSERT_TRUE(replace("old"));
    rlimit before = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit tight{.rlim_cur = 4096, .rlim_max = before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &tight), 0);
    const bool isReplaced = replace(QByteArray(100'000, 'x'));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, handler);

    EXPECT_FALSE(isReplaced);
    EXPECT_EQ(readFile(path("file"), 10), "old");
    EXPECT_EQ(names(), QStringList(u"file"_s));
}

TEST_F(FileContents, stayWhenTheDiskIsFull)
{
    const QByteArray disk = QFile::encodeName(m_folder.path());
    if (mount("tmpfs", disk.constData(), "tmpfs", 0, "size=64k") != 0) {
        GTEST_SKIP() << "a small disk can only be made by the administrator";
    }
    ASSERT_TRUE(replace("old"));
    EXPECT_FALSE(replace(QByteArray(100'000, 'x')));
    EXPECT_EQ(readFile(path("file"), 10), "old");
    EXPECT_EQ(names(), QStringList(u"file"_s));
    EXPECT_TRUE(replace(QByteArray(30'000, 'x')));
    EXPECT_EQ(umount(disk.constData()), 0);
}

TEST_F(FileContents, getASecondName)
{
    ASSERT_TRUE(replace("contents"));
    EXPECT_FALSE(areSameFile(path("file"), path("second")));
    ASSERT_TRUE(replaceFileByLink(path("second"), path("scratch"), path("file")));
    EXPECT_TRUE(areSameFile(path("file"), path("second")));
    // Once more changes nothing and leaves nothing.
    ASSERT_TRUE(replaceFileByLink(path("second"), path("scratch"), path("file")));
    EXPECT_EQ(names(), QStringList({u"file"_s, u"second"_s}));

    // They part when one of them is replaced.
    ASSERT_TRUE(replace("other"));
    EXPECT_FALSE(areSameFile(path("file"), path("second")));
    EXPECT_EQ(readFile(path("second"), 10), "contents");
    EXPECT_FALSE(replaceFileByLink(path("second"), path("scratch"), path("missing")));
    EXPECT_EQ(readFile(path("second"), 10), "contents");
}

} // namespace
} // namespace lumenfold
