#include "cards/CardPicture.h"

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

TEST(CardPictureTest, aPictureOfTheCardsProportionsIsScaledToTheCard)
{
    EXPECT_EQ(fillingSize({1600, 1200}, {160, 120}), (PixelSize{160, 120}));
    EXPECT_EQ(fillingSize({80, 60}, {160, 120}), (PixelSize{160, 120}));
}

TEST(CardPictureTest, aWidePictureIsScaledToTheCardsHeightAndAHighOneToItsWidth)
{
    EXPECT_EQ(fillingSize({3840, 1080}, {160, 120}), (PixelSize{427, 120}));
    EXPECT_EQ(fillingSize({1080, 3840}, {160, 120}), (PixelSize{160, 569}));
}

TEST(CardPictureTest, roundingLeavesNoEdgeOfTheCardBare)
{
    // A third of a pixel less would do for the width.
    const PixelSize size = fillingSize({1001, 1000}, {333, 333});
    EXPECT_GE(size.width, 333);
    EXPECT_GE(size.height, 333);
}

TEST(CardPictureTest, nothingIsFilledByNothing)
{
    EXPECT_TRUE(fillingSize({0, 0}, {160, 120}).isEmpty());
    EXPECT_TRUE(fillingSize({1600, 1200}, {0, 120}).isEmpty());
}

TEST(CardPictureTest, theMiddleOfThePictureIsSeen)
{
    EXPECT_EQ(visiblePart({160, 120}, {160, 120}), QRectF(0, 0, 160, 120));
    EXPECT_EQ(visiblePart({480, 120}, {160, 120}), QRectF(160, 0, 160, 120));
    EXPECT_EQ(visiblePart({160, 360}, {160, 120}), QRectF(0, 120, 160, 120));
    EXPECT_EQ(visiblePart({80, 60}, {160, 120}), QRectF(0, 0, 80, 60));
}

} // namespace
} // namespace lumenfold::test
