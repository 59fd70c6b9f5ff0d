#include "cards/ResizeHotCorner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

using ::testing::IsEmpty;
using ::testing::Optional;

/// A pinned card of 300 x 200 in its panel, and where its handles are: (60, 244) and (344, 60).
constexpr Size view{404, 304};
constexpr ResizeZones zones{.cardInset = 52, .handleInset = 8, .handleGrab = 22};

TEST(ResizeHotCorner, aSquareOfFortyFourPointsAroundEachHandle)
{
    EXPECT_THAT(handleCorner({60, 244}, view, zones), Optional(PreviewResizeCorner::topLeft));
    EXPECT_THAT(handleCorner({344, 60}, view, zones), Optional(PreviewResizeCorner::bottomRight));
    // To the right and downwards.
    EXPECT_THAT(handleCorner({80, 224}, view, zones), Optional(PreviewResizeCorner::topLeft));
    EXPECT_THAT(handleCorner({82, 222}, view, zones), Optional(PreviewResizeCorner::topLeft));
    EXPECT_EQ(handleCorner({83, 244}, view, zones), std::nullopt);
    EXPECT_EQ(handleCorner({60, 221}, view, zones), std::nullopt);
    // 14 points outside the card.
    EXPECT_THAT(handleCorner({38, 266}, view, zones), Optional(PreviewResizeCorner::topLeft));
    EXPECT_EQ(handleCorner({37, 266}, view, zones), std::nullopt);
    EXPECT_EQ(handleCorner({38, 267}, view, zones), std::nullopt);
}

TEST(ResizeHotCorner, theOtherTwoCornersHaveNone)
{
    EXPECT_EQ(handleCorner({344, 244}, view, zones), std::nullopt);
    EXPECT_EQ(handleCorner({60, 60}, view, zones), std::nullopt);
    EXPECT_EQ(handleCorner({202, 152}, view, zones), std::nullopt);
}

TEST(ResizeHotCorner, withoutAGrabThereIsNone)
{
    for (const double grab : {0.0, -1.0}) {
        const ResizeZones none{.cardInset = 52, .handleInset = 8, .handleGrab = grab};
        EXPECT_EQ(handleCorner({60, 244}, view, none), std::nullopt);
        EXPECT_THAT(resizeHotZones(view, none), IsEmpty());
    }
}

TEST(ResizeHotCorner, aCardOfNoSizeHasNone)
{
    EXPECT_EQ(handleCorner({52, 52}, {104, 304}, zones), std::nullopt);
    EXPECT_EQ(handleCorner({52, 52}, {404, 104}, zones), std::nullopt);
    EXPECT_EQ(handleCorner({0, 0}, {0, 0}, zones), std::nullopt);
}

TEST(ResizeHotCorner, onAVerySmallCardTheUpperLeftCornerWins)
{
    // A card of 20 x 20: the handles are 4 points apart.
    EXPECT_THAT(handleCorner({62, 62}, {124, 124}, zones), Optional(PreviewResizeCorner::topLeft));
    EXPECT_THAT(handleCorner({85, 40}, {124, 124}, zones), Optional(PreviewResizeCorner::bottomRight));
}

} // namespace
} // namespace lumenfold::test
