#include "service/templates/PreviewCache.h"

#include "service/templates/PreviewDecoder.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

PreviewKey keyOf(const QString &name, const QString &version = {})
{
    return {.address = QStringLiteral("https://files.example/") + name, .version = version};
}

class PreviewCacheTest : public ::testing::Test {
protected:
    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("LumenFold/template-previews")); }
    [[nodiscard]] QFileInfoList files() const { return QDir(path()).entryInfoList(QDir::Files | QDir::Hidden); }
    static void makeOld(const QFileInfo &info, qint64 seconds)
    {
        QFile file(info.filePath());
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(
            file.setFileTime(QDateTime::currentDateTime().addSecs(-seconds), QFileDevice::FileModificationTime));
    }

    QTemporaryDir m_folder;
    PreviewCache m_cache{path()};
};

TEST_F(PreviewCacheTest, GivesBackWhatItWasGiven)
{
    EXPECT_EQ(m_cache.find(keyOf(QStringLiteral("a"))), std::nullopt);
    EXPECT_FALSE(QDir(path()).exists()) << "looking makes nothing";
    m_cache.store(keyOf(QStringLiteral("a")), "first");
    m_cache.store(keyOf(QStringLiteral("b")), "second");
    EXPECT_EQ(m_cache.find(keyOf(QStringLiteral("a"))), "first");
    EXPECT_EQ(m_cache.find(keyOf(QStringLiteral("b"))), "second");
    m_cache.store(keyOf(QStringLiteral("a")), "third");
    EXPECT_EQ(m_cache.find(keyOf(QStringLiteral("a"))), "third");
    m_cache.remove(keyOf(QStringLiteral("a")));
    EXPECT_EQ(m_cache.find(keyOf(QStringLiteral("a"))), std::nullopt);
}

TEST_F(PreviewCacheTest, AnEditedTemplateHasAnotherPicture)
{
    m_cache.store(keyOf(QStringLiteral("a"), QStringLiteral("2024-05")), "old");
    EXPECT_EQ(m_cache.find(keyOf(QStringLiteral("a"), QStringLiteral("2024-06"))), std::nullopt);
}

TEST_F(PreviewCacheTest, FilesHaveHarmlessNamesAndBelongToTheUserAlone)
{
    m_cache.store(keyOf(QStringLiteral("../../../etc/passwd?token=secret")), "x");
    m_cache.store(keyOf(QString(5000, u'a')), "x");
    ASSERT_EQ(files().size(), 2);
    const QRegularExpression digest(QStringLiteral("^[0-9a-f]{64}$"));
    for (const QFileInfo &file : files()) {
        EXPECT_TRUE(digest.match(file.fileName()).hasMatch()) << qPrintable(file.fileName());
        EXPECT_FALSE(file.permissions() & (QFile::ReadGroup | QFile::ReadOther));
    }
    EXPECT_FALSE(QFileInfo(path()).permissions() & (QFile::ExeGroup | QFile::ExeOther));
}

TEST_F(PreviewCacheTest, TheOldestGoWhenThereAreTooMany)
{
    const PreviewCache cache(path(), {.count = 3});
    for (int number = 0; number < 3; ++number) {
        cache.store(keyOf(QString::number(number)), "x");
        makeOld(files().constLast(), 1000);
    }
    for (const QFileInfo &file : files()) {
        makeOld(file, 1000);
    }
    cache.store(keyOf(QStringLiteral("new")), "x");
    EXPECT_EQ(files().size(), 3);
    EXPECT_EQ(cache.find(keyOf(QStringLiteral("new"))), "x");
}

TEST_F(PreviewCacheTest, TheOldestGoWhenTheyTakeTooMuchRoom)
{
    const PreviewCache cache(path(), {.bytes = 2500});
    cache.store(keyOf(QStringLiteral("old")), QByteArray(1000, 'o'));
    makeOld(files().constFirst(), 1000);
    cache.store(keyOf(QStringLiteral("a")), QByteArray(1000, 'a'));
    EXPECT_EQ(files().size(), 2);
    cache.store(keyOf(QStringLiteral("b")), QByteArray(1000, 'b'));
    EXPECT_EQ(files().size(), 2);
    EXPECT_EQ(cache.find(keyOf(QStringLiteral("old"))), std::nullopt);
}

TEST_F(PreviewCacheTest, WhatAKilledProgramLeftBehindGoesToo)
{
    ASSERT_TRUE(QDir().mkpath(path()));
    QFile scratch(path() + QStringLiteral("/0123.half-written"));
    ASSERT_TRUE(scratch.open(QIODevice::WriteOnly));
    scratch.close();
    makeOld(QFileInfo(scratch), 1000);
    const PreviewCache cache(path(), {.count = 1});
    cache.store(keyOf(QStringLiteral("a")), "x");
    EXPECT_FALSE(scratch.exists());
    EXPECT_EQ(cache.find(keyOf(QStringLiteral("a"))), "x");
}

TEST_F(PreviewCacheTest, OldPicturesAreNotShownAnyMore)
{
    m_cache.store(keyOf(QStringLiteral("a")), "x");
    makeOld(files().constFirst(), 6 * 24 * 3600);
    EXPECT_EQ(m_cache.find(keyOf(QStringLiteral("a"))), "x");
    makeOld(files().constFirst(), 8 * 24 * 3600);
    EXPECT_EQ(m_cache.find(keyOf(QStringLiteral("a"))), std::nullopt);
}

TEST_F(PreviewCacheTest, WhatCannotBeReadOrWrittenIsNotThere)
{
    m_cache.store(keyOf(QStringLiteral("a")), "x");
    const QString stored = files().constFirst().filePath();
    QFile::remove(stored);
    ASSERT_TRUE(QDir().mkpath(stored));
    EXPECT_EQ(m_cache.find(keyOf(QStringLiteral("a"))), std::nullopt);

    QFile file(m_folder.filePath(QStringLiteral("file")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const PreviewCache nowhere(file.fileName() + QStringLiteral("/cache"));
    nowhere.store(keyOf(QStringLiteral("a")), "x");
    EXPECT_EQ(nowhere.find(keyOf(QStringLiteral("a"))), std::nullopt);
}

TEST_F(PreviewCacheTest, AFileThatGrewBeyondAllPicturesIsNotRead)
{
    m_cache.store(keyOf(QStringLiteral("a")), "x");
    ASSERT_TRUE(QFile::resize(files().constFirst().filePath(), maximumPreviewBytes + 1));
    EXPECT_EQ(m_cache.find(keyOf(QStringLiteral("a"))), std::nullopt);
}

} // namespace
} // namespace lumenfold::test
