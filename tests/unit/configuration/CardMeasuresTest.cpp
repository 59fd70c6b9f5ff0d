#include "app/configuration/CardMeasures.h"

#include <gtest/gtest.h>

#include <optional>

namespace lumenfold::test {
namespace {

TEST(CardMeasures, CapacityFollowsTheVisibleHeight)
{
    EXPECT_EQ(stackCapacity(875), 6);
    EXPECT_EQ(stackCapacity(300), 3);
    EXPECT_EQ(stackCapacity(1000), 7);
    EXPECT_EQ(stackCapacity(2160), 15);
}

TEST(CardMeasures, CapacityIsRoundedToNearestHalvesUp)
{
    // 6.5 cards and a little less.
    EXPECT_EQ(stackCapacity(6.5 * 875 / 6), 7);
    EXPECT_EQ(stackCapacity(6.49 * 875 / 6), 6);
}

TEST(CardMeasures, CapacityIsNeverLessThanThree)
{
    EXPECT_EQ(stackCapacity(1), 3);
    EXPECT_EQ(stackCapacity(0), 3);
    EXPECT_EQ(stackCapacity(-100), 3);
}

TEST(CardMeasures, WithoutAScreenThereIsRoomForSix)
{
    EXPECT_EQ(stackCapacity(std::nullopt), 6);
    EXPECT_EQ(defaultCardSize(std::nullopt), (Size{220, 165}));
}

TEST(CardMeasures, CardsFillTheColumnAtFourToThree)
{
    const Size size = defaultCardSize(875);
    EXPECT_NEAR(size.width, 170.44, 0.005);
    EXPECT_NEAR(size.height, 127.83, 0.005);
    EXPECT_DOUBLE_EQ(6 * size.height + 5 * 12 + 2 * 24, 875);
}

TEST(CardMeasures, CardsAreNotMadeSmallerThanTheyMayBe)
{
    // (300 - 48 - 24) / 3 would be 76 high.
    EXPECT_EQ(defaultCardSize(300), (Size{140, 105}));
}

TEST(CardMeasures, AScreenWithoutRoomForAnyCardGetsTheFallbackSize)
{
    // Three cards' margins and gaps alone take 72.
    EXPECT_EQ(defaultCardSize(72), (Size{220, 165}));
    EXPECT_EQ(defaultCardSize(0), (Size{220, 165}));
    EXPECT_EQ(defaultCardSize(73), (Size{140, 105}));
}

} // namespace
} // namespace lumenfold::test
