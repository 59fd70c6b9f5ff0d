#include "cards/CardWrites.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumenfold {
namespace {

using namespace Qt::StringLiterals;
using ::testing::IsEmpty;

class CardWritesTest : public ::testing::Test {
protected:
    [[nodiscard]] QStringList saved() const
    {
        QStringList names;
        for (const CardWrites::Save &save : writes.saves()) {
            names.append(save.name);
        }
        return names;
    }

    const Image one = Image::withoutRepresentation({1, 1});
    const Image other = Image::withoutRepresentation({2, 2});
    CardWrites writes;
};

TEST_F(CardWritesTest, areEmptyUntilSomethingIsAskedFor)
{
    EXPECT_TRUE(writes.isEmpty());
    writes.list({});
    EXPECT_FALSE(writes.isEmpty());
}

TEST_F(CardWritesTest, theLastWordOnAFileCounts)
{
    writes.save(u"A.png"_s, one);
    writes.save(u"A.png"_s, other);
    EXPECT_EQ(saved(), QStringList(u"A.png"_s));
    EXPECT_EQ(writes.imageToSave(u"A.png"_s), other);

    writes.remove(u"A.png"_s);
    EXPECT_THAT(saved(), IsEmpty());
    EXPECT_TRUE(writes.removes(u"A.png"_s));
    EXPECT_EQ(writes.removals(), QSet<QString>{u"A.png"_s});

    writes.save(u"A.png"_s, one);
    EXPECT_EQ(saved(), QStringList(u"A.png"_s));
    EXPECT_THAT(writes.removals(), IsEmpty());
    EXPECT_FALSE(writes.removes(u"A.png"_s));
}

TEST_F(CardWritesTest, aListDropsWhatWasSavedOfOtherCards)
{
    writes.save(u"A.png"_s, one);
    writes.save(u"A-source.png"_s, one);
    writes.save(u"B.png"_s, other);
    writes.list({{.id = u"A"_s}});
    EXPECT_EQ(saved(), QStringList({u"A.png"_s, u"A-source.png"_s}));
    EXPECT_TRUE(writes.removes(u"B.png"_s));
    EXPECT_TRUE(writes.removes(u"never seen.png"_s));
    EXPECT_FALSE(writes.removes(u"A.png"_s));
}

TEST_F(CardWritesTest, aListKeepsWhatIsSavedAfterIt)
{
    writes.list({{.id = u"A"_s}});
    writes.save(u"B.png"_s, other);
    EXPECT_EQ(saved(), QStringList(u"B.png"_s));
    EXPECT_EQ(writes.namesToKeep(), (QSet<QString>{u"A.png"_s, u"A-source.png"_s, u"B.png"_s}));
}

TEST_F(CardWritesTest, laterOnesHaveTheLastWord)
{
    writes.save(u"A.png"_s, one);
    writes.save(u"B.png"_s, one);
    writes.list({{.id = u"A"_s}, {.id = u"B"_s}});
    CardWrites later;
    later.remove(u"A.png"_s);
    later.save(u"D.png"_s, other);
    later.list({{.id = u"B"_s}, {.id = u"D"_s}});
    later.save(u"C.png"_s, other);
    writes.append(later);
    EXPECT_EQ(saved(), QStringList({u"B.png"_s, u"D.png"_s, u"C.png"_s}));
    EXPECT_EQ(writes.removals(), QSet<QString>{u"A.png"_s});
    EXPECT_EQ(writes.manifest().value().size(), 2);

    CardWrites savedAgain;
    savedAgain.save(u"A.png"_s, other);
    writes.append(savedAgain);
    EXPECT_EQ(writes.imageToSave(u"A.png"_s), other);
    EXPECT_THAT(writes.removals(), IsEmpty());
    EXPECT_EQ(writes.manifest().value().size(), 2);
}

TEST_F(CardWritesTest, namesNoFilesForIdsThatCanHaveNone)
{
    writes.list({{.id = u"../A"_s}, {.id = QString()}});
    EXPECT_THAT(writes.namesToKeep(), IsEmpty());
    EXPECT_EQ(writes.manifest().value().size(), 2);
}

TEST(CardWritesThumbnails, areThoseOfTheImageThatIsSaved)
{
    const QString name = QStringLiteral("A.png");
    const Image before = Image::withoutRepresentation({1, 1});
    const Image edited = Image::withoutRepresentation({2, 2});
    CardWrites writes;
    writes.keepThumbnail(name, before);
    EXPECT_EQ(writes.thumbnails().value(name), before);
    writes.save(name, edited);
    EXPECT_TRUE(writes.thumbnails().isEmpty());
    writes.keepThumbnail(name, before);
    EXPECT_TRUE(writes.thumbnails().isEmpty());
    writes.keepThumbnail(name, edited);
    EXPECT_EQ(writes.thumbnails().value(name), edited);
    writes.remove(name);
    EXPECT_TRUE(writes.thumbnails().isEmpty());
    writes.keepThumbnail(name, edited);
    EXPECT_TRUE(writes.thumbnails().isEmpty());
}

} // namespace
} // namespace lumenfold
