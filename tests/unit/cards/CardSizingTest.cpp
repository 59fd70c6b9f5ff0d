#include "cards/CardSizing.h"

#include "tests/unit/cards/CardsFixture.h"

namespace lumenfold::test {
namespace {

TEST(CardSizingTest, theRatioIsThatOfThePixels)
{
    EXPECT_DOUBLE_EQ(pixelAspectRatio(picture(1000, 250)), 4);
    EXPECT_DOUBLE_EQ(pixelAspectRatio(picture(1, 3)), 1.0 / 3);
}

TEST(CardSizingTest, withoutPixelsTheRatioIsThatOfTheSizeInPoints)
{
    EXPECT_DOUBLE_EQ(pixelAspectRatio(Image::withoutRepresentation({300, 200})), 1.5);
}

TEST(CardSizingTest, withoutPixelsAndSizeTheRatioIsFourToThree)
{
    EXPECT_DOUBLE_EQ(pixelAspectRatio(Image()), 4.0 / 3);
    EXPECT_DOUBLE_EQ(pixelAspectRatio(Image::withoutRepresentation({300, 0})), 4.0 / 3);
}

TEST(CardSizingTest, onlyAPinnedCardTakesTheRatioOfItsImage)
{
    EXPECT_DOUBLE_EQ(cardAspectRatio(PreviewCardVariant::stack, picture(1000, 250)), 4.0 / 3);
    EXPECT_DOUBLE_EQ(cardAspectRatio(PreviewCardVariant::pinned, picture(1000, 250)), 4);
}

TEST(CardSizingTest, theHitMarginIsWiderAroundAPinnedCard)
{
    EXPECT_EQ(cardHitMargin(PreviewCardVariant::stack), 30);
    EXPECT_EQ(cardHitMargin(PreviewCardVariant::pinned), 52);
}

/// A stack card of 200 x 150 at (100, 100) in its panel.
constexpr Rect startFrame{70, 70, 260, 210};

Rect resizedCard(PreviewResizeCorner corner, Size translation)
{
    return cornerResizedFrame(startFrame, 30, 4.0 / 3, corner, translation).insetBy(30);
}

TEST(CardSizingTest, pullingACornerKeepsTheOppositeOne)
{
    // Each is a pull of 40 x 30 outwards, along the diagonal of 4:3.
    EXPECT_THAT(resizedCard(PreviewResizeCorner::topRight, {40, 30}), RectNear(Rect{100, 100, 240, 180}));
    EXPECT_THAT(resizedCard(PreviewResizeCorner::topLeft, {-40, 30}), RectNear(Rect{60, 100, 240, 180}));
    EXPECT_THAT(resizedCard(PreviewResizeCorner::bottomRight, {40, -30}), RectNear(Rect{100, 70, 240, 180}));
    EXPECT_THAT(resizedCard(PreviewResizeCorner::bottomLeft, {-40, -30}), RectNear(Rect{60, 70, 240, 180}));
}

TEST(CardSizingTest, aPullAcrossTheDiagonalCountsHalf)
{
    EXPECT_THAT(resizedCard(PreviewResizeCorner::topRight, {40, 0}), RectNear(Rect{100, 100, 220, 165}));
    EXPECT_THAT(resizedCard(PreviewResizeCorner::topRight, {0, 30}), RectNear(Rect{100, 100, 220, 165}));
    EXPECT_THAT(resizedCard(PreviewResizeCorner::topRight, {40, -30}), RectNear(Rect{100, 100, 200, 150}));
}

TEST(CardSizingTest, aCardIsResizedWithinItsSmallestAndLargestWidth)
{
    EXPECT_THAT(resizedCard(PreviewResizeCorner::topRight, {-5000, 0}), RectNear(Rect{100, 100, 140, 105}));
    EXPECT_THAT(resizedCard(PreviewResizeCorner::bottomLeft, {-5000, 0}), RectNear(Rect{-900, -650, 1200, 900}));
}

TEST(CardSizingTest, theHitMarginIsNotResized)
{
    const Rect panel = cornerResizedFrame({0, 0, 304, 204}, 52, 2, PreviewResizeCorner::bottomRight, {100, -50});
    // The card was 200 x 100 at (52, 52) and has become 300 x 150 with the top where it was.
    EXPECT_THAT(panel, RectNear(Rect{0, -50, 404, 254}));
}

} // namespace
} // namespace lumenfold::test
