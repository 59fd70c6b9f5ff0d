#include "cards/CardFileNames.h"

#include <gtest/gtest.h>

namespace lumenfold {
namespace {

using namespace Qt::StringLiterals;

TEST(CardFileNames, areTheIdWithAnEnding)
{
    EXPECT_EQ(imageFileName(u"5F0C-1"_s), u"5F0C-1.png"_s);
    EXPECT_EQ(editorSourceImageFileName(u"5F0C-1"_s), u"5F0C-1-source.png"_s);
    EXPECT_EQ(imageFileName(u".."_s), u"...png"_s);
}

TEST(CardFileNames, neverLeadOutOfTheFolder)
{
    for (const QString &id : {QString(), u"/etc/passwd"_s, u"../A"_s, u"a/b"_s, u"/"_s, u"A\0"_s, u"\0"_s,
                              QString(QChar(0xd800)), QString(300, u'a'), QString(200, QChar(0x00e4))}) {
        EXPECT_FALSE(imageFileName(id)) << qPrintable(id);
        EXPECT_FALSE(editorSourceImageFileName(id)) << qPrintable(id);
    }
}

TEST(CardFileNames, areAsLongAsNamesMayBe)
{
    EXPECT_EQ(editorSourceImageFileName(QString(244, u'a')).value().size(), 255);
    EXPECT_FALSE(imageFileName(QString(245, u'a')));
}

TEST(CardFileNames, ofImagesAreKnown)
{
    EXPECT_TRUE(isImageFileName(u"A.png"_s));
    EXPECT_TRUE(isImageFileName(u".A.png"_s));
    EXPECT_FALSE(isImageFileName(u".png"_s));
    EXPECT_FALSE(isImageFileName(u"A.PNG"_s));
    EXPECT_FALSE(isImageFileName(u"A.png.txt"_s));
    EXPECT_FALSE(isImageFileName(manifestFileName));
    EXPECT_FALSE(isImageFileName(scratchFileName));
}

} // namespace
} // namespace lumenfold
