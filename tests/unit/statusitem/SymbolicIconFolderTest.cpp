#include "platform/statusitem/notifier/SymbolicIconFolder.h"

#include "app/menubar/MenuBarImages.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

class SymbolicIconFolderTest : public ::testing::Test {
protected:
    [[nodiscard]] QByteArray contents(const QString &name) const
    {
        QFile file(folder.path() + u'/' + name + QStringLiteral(".svg"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir temporary;
    const SymbolicIconFolder folder{temporary.filePath(QStringLiteral("a/b"))};
    const StatusIcon plain{.image = menuBarImage(), .hasBadge = false};
    const StatusIcon badged{.image = menuBarImage(), .hasBadge = true};
};

TEST_F(SymbolicIconFolderTest, ADrawingIsThereUnderANameThatPanelsColour)
{
    const QString name = folder.nameOf(plain, Qt::white);
    EXPECT_TRUE(name.endsWith(QStringLiteral("-symbolic")));
    EXPECT_EQ(contents(name), symbolicDrawing(plain, Qt::white));
    EXPECT_EQ(contents(QStringLiteral("hicolor/scalable/status/") + name), symbolicDrawing(plain, Qt::white));
}

TEST_F(SymbolicIconFolderTest, AnotherDrawingHasAnotherName)
{
    const QString name = folder.nameOf(plain, Qt::white);
    EXPECT_EQ(folder.nameOf(plain, Qt::white), name);
    EXPECT_NE(folder.nameOf(plain, Qt::black), name);
    EXPECT_NE(folder.nameOf(badged, Qt::white), name);
}

TEST_F(SymbolicIconFolderTest, WhatSomebodyTookAwayOrSpoiltIsWrittenAgain)
{
    const QString name = folder.nameOf(plain, Qt::white);
    QDir(folder.path()).removeRecursively();
    EXPECT_EQ(folder.nameOf(plain, Qt::white), name);
    QFile file(folder.path() + u'/' + name + QStringLiteral(".svg"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("no drawing");
    file.close();
    EXPECT_EQ(folder.nameOf(plain, Qt::white), name);
    EXPECT_EQ(contents(name), symbolicDrawing(plain, Qt::white));
}

TEST_F(SymbolicIconFolderTest, WhereNothingCanBeWrittenThereIsNoName)
{
    EXPECT_EQ(SymbolicIconFolder(QString()).nameOf(plain, Qt::white), QString());
    EXPECT_EQ(SymbolicIconFolder(QStringLiteral("/proc/nowhere")).nameOf(plain, Qt::white), QString());
    EXPECT_EQ(folder.nameOf({}, Qt::white), QString());
}

} // namespace
} // namespace lumenfold::test
