#include "cards/PersistedCardCoding.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace lumenfold {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::vector<PersistedCard> twoCards{
    {.id = u"A"_s},
    {.id = u"B"_s, .editorSourceId = u"S"_s, .isPinned = true, .frame = Rect{100, 200, 404.5, 344}},
};

TEST(PersistedCardCoding, saysExactlyWhatEachCardIs)
{
    const QByteArray text = encodePersistedCards(twoCards).value();
    const QJsonArray expected{
        QJsonObject{{u"id"_s, u"A"_s}, {u"isPinned"_s, false}},
        QJsonObject{{u"id"_s, u"B"_s},
                    {u"editorSourceId"_s, u"S"_s},
                    {u"isPinned"_s, true},
                    {u"frame"_s, QJsonArray{QJsonArray{100.0, 200.0}, QJsonArray{404.5, 344.0}}}},
    };
    EXPECT_EQ(QJsonDocument::fromJson(text).array(), expected);
    EXPECT_FALSE(text.contains('\n'));
    EXPECT_TRUE(text.contains(R"("frame":[[100,200],[404.5,344]])")) << text.constData();
}

TEST(PersistedCardCoding, readsWhatItWrote)
{
    EXPECT_EQ(decodePersistedCards(encodePersistedCards(twoCards).value()), twoCards);
    EXPECT_EQ(encodePersistedCards({}), "[]");
    EXPECT_THAT(decodePersistedCards("[]").value(), IsEmpty());
}

TEST(PersistedCardCoding, keepsEveryDigitAndEveryLetter)
{
    const std::vector<PersistedCard> odd{
        {.id = u"\"\\/\u0001\u00e4\U0001F600"_s,
         .editorSourceId = QString(),
         .isPinned = true,
         .frame = Rect{-0.1, 1e300, 1.0 / 3, std::numeric_limits<double>::denorm_min()}},
        {.id = QString()},
    };
    EXPECT_EQ(decodePersistedCards(encodePersistedCards(odd).value()), odd);
}

TEST(PersistedCardCoding, readsOtherOrdersUnknownKeysAndNull)
{
    EXPECT_THAT(decodePersistedCards(R"([ {"isPinned":true, "size":[1], "frame":[[1,2],[3e0,4.0]], "id":"B",
                                           "editorSourceId":"S"} ])")
                    .value(),
                ElementsAre(PersistedCard{
                    .id = u"B"_s, .editorSourceId = u"S"_s, .isPinned = true, .frame = Rect{1, 2, 3, 4}}));
    EXPECT_THAT(decodePersistedCards(R"([{"id":"A","isPinned":false,"frame":null,"editorSourceId":null}])").value(),
                ElementsAre(PersistedCard{.id = u"A"_s}));
}

class UnreadableManifest : public ::testing::TestWithParam<const char *> {};

TEST_P(UnreadableManifest, isNoManifest)
{
    EXPECT_FALSE(decodePersistedCards(GetParam()));
}

TEST_P(UnreadableManifest, isNoneWithAGoodEntryBeforeIt)
{
    const QByteArray text = GetParam();
    if (text.startsWith("[{")) {
        EXPECT_FALSE(decodePersistedCards(R"([{"id":"A","isPinned":false},)" + text.sliced(1)));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Wrong, UnreadableManifest,
    ::testing::Values("", "nonsense", "null", "{}", R"({"id":"A","isPinned":false})", R"([{"id":"A","isPinned":false})",
                      R"([{"id":"A"}])", R"([{"isPinned":true}])", R"([{"id":1,"isPinned":true}])",
                      R"([{"id":null,"isPinned":true}])", R"([{"id":"A","isPinned":1}])",
                      R"([{"id":"A","isPinned":"true"}])", R"([{"id":"A","isPinned":null}])", R"([null])", R"([[]])",
                      R"(["A"])", R"([{"id":"A","isPinned":true,"editorSourceId":7}])",
                      R"([{"id":"A","isPinned":true,"frame":[]}])", R"([{"id":"A","isPinned":true,"frame":[1,2,3,4]}])",
                      R"([{"id":"A","isPinned":true,"frame":[[1,2]]}])",
                      R"([{"id":"A","isPinned":true,"frame":[[1,2],[3]]}])",
                      R"([{"id":"A","isPinned":true,"frame":[[1,2],[3,"4"]]}])",
                      R"([{"id":"A","isPinned":true,"frame":[[1,2],[3,null]]}])",
                      R"([{"id":"A","isPinned":true,"frame":{"x":1}}])",
                      R"([{"id":"A","isPinned":true,"frame":[[NaN,2],[3,4]]}])",
                      R"([{"id":"A","isPinned":true,"frame":[[1e999,2],[3,4]]}])",
                      R"([{"id":"A","isPinned":true,"frame":[[-Infinity,2],[3,4]]}])", "[{\"id\":\"\xff\"}]"));

TEST(PersistedCardCoding, cannotSayFramesOfNoSize)
{
    for (const double number : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                                -std::numeric_limits<double>::infinity()}) {
        EXPECT_FALSE(encodePersistedCards({{.id = u"A"_s, .isPinned = true, .frame = Rect{0, 0, number, 1}}}));
    }
}

TEST(PersistedCardCoding, readsNoMoreThanAnybodyHas)
{
    QByteArray entry = R"({"id":"A","isPinned":false},)";
    QByteArray million = "[" + entry.repeated(1'000'000);
    million.back() = ']';
    EXPECT_FALSE(decodePersistedCards(million));

    QByteArray many = "[" + entry.repeated(20'000);
    many.back() = ']';
    EXPECT_EQ(decodePersistedCards(many).value().size(), 20'000);
}

TEST(PersistedCardCoding, isNotLedIntoTheDepth)
{
    EXPECT_FALSE(decodePersistedCards(QByteArray(1'000'000, '[')));
    EXPECT_FALSE(decodePersistedCards(QByteArray("[{\"id\":").repeated(100'000)));
}

} // namespace
} // namespace lumenfold
