#include "platform/files/UserFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lumenfold {
namespace {

using namespace Qt::StringLiterals;

class UserFileTest : public ::testing::Test {
protected:
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
    [[nodiscard]] QStringList entries() const
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    [[nodiscard]] QByteArray contents(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : "unreadable";
    }

    [[nodiscard]] tl::expected<void, QString> write(const QString &name, const QByteArray &bytes) const
    {
        return writeUserFile(path(name), [bytes](QFile &file) { return writeBytes(file, bytes); });
    }

private:
    QTemporaryDir m_folder;
};

TEST_F(UserFileTest, hasItsBytesAndLeavesNothingElse)
{
    const QByteArray bytes(3'000'000, 'x');
    EXPECT_TRUE(write(u"a.png"_s, bytes));
    EXPECT_EQ(contents(u"a.png"_s), bytes);
    EXPECT_TRUE(write(u"a.png"_s, "new"));
    EXPECT_EQ(contents(u"a.png"_s), "new");
    EXPECT_TRUE(write(u"nothing.png"_s, {}));
    EXPECT_EQ(contents(u"nothing.png"_s), "");
    EXPECT_EQ(entries(), (QStringList{u"a.png"_s, u"nothing.png"_s}));
}

TEST_F(UserFileTest, aFolderInItsPlaceIsAnErrorAndStays)
{
    ASSERT_TRUE(QDir().mkpath(path(u"a.png/inside"_s)));
    const auto result = write(u"a.png"_s, "bytes");
    ASSERT_FALSE(result);
    EXPECT_FALSE(result.error().isEmpty());
    EXPECT_TRUE(QDir(path(u"a.png/inside"_s)).exists());
    EXPECT_EQ(entries(), QStringList{u"a.png"_s});
}

TEST_F(UserFileTest, aMissingFolderIsAnErrorAndIsNotMade)
{
    const auto result = write(u"nowhere/a.png"_s, "bytes");
    ASSERT_FALSE(result);
    EXPECT_FALSE(result.error().isEmpty());
    EXPECT_TRUE(entries().isEmpty());
}

} // namespace
} // namespace lumenfold
