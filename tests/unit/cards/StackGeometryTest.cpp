#include "cards/StackGeometry.h"

#include "tests/unit/cards/CardsFixture.h"

namespace lumenfold::test {
namespace {

using ::testing::ElementsAre;

/// The screen of four cards of 160 x 120.
constexpr StackMetrics metrics{.visibleFrame = Rect{100, 50, 1000, 564}, .cardSize = {160, 120}, .capacity = 4};
constexpr StackMetrics noScreen{.visibleFrame = std::nullopt, .cardSize = {220, 165}, .capacity = 6};

std::vector<Rect> frames(const StackState &state)
{
    std::vector<Rect> result;
    for (const StackTarget &target : targetFrames(metrics, state)) {
        result.push_back(target.frame);
    }
    return result;
}

std::vector<bool> behind(const StackState &state)
{
    std::vector<bool> result;
    for (const StackTarget &target : targetFrames(metrics, state)) {
        result.push_back(target.isBehind);
    }
    return result;
}

std::vector<bool> covered(const StackState &state)
{
    std::vector<bool> result;
    for (const StackTarget &target : targetFrames(metrics, state)) {
        result.push_back(target.isCovered);
    }
    return result;
}

TEST(StackGeometryTest, metricsComeFromTheMainScreen)
{
    FakeScreens screens;
    FakeUserDefaults defaults;
    FakeFileManager files;
    const AppConfig config(defaults, screens, files);
    screens.setScreens({screenOfFourCards(), FakeScreens::plainScreen(2, {1100, 0, 3840, 2160})});

    const StackMetrics measured = StackMetrics::current(screens, config);
    EXPECT_EQ(measured.visibleFrame, (Rect{100, 50, 1000, 564}));
    EXPECT_EQ(measured.cardSize, (Size{160, 120}));
    EXPECT_EQ(measured.capacity, 4);

    screens.setScreens({});
    EXPECT_FALSE(StackMetrics::current(screens, config).visibleFrame);
}

TEST(StackGeometryTest, slotsGrowUpwardsFromTheBottomLeftCorner)
{
    EXPECT_THAT(frameForSlot(metrics, 0), RectNear(Rect{94, 44, 220, 180}));
    EXPECT_THAT(frameForSlot(metrics, 1), RectNear(Rect{94, 176, 220, 180}));
    EXPECT_THAT(frameForSlot(metrics, 3), RectNear(Rect{94, 440, 220, 180}));
}

TEST(StackGeometryTest, deeperLayersRiseAndShrinkAroundTheCentreLine)
{
    EXPECT_THAT(collapsedFrame(metrics, {.depth = 0}), RectNear(Rect{94, 44, 220, 180}));
    EXPECT_THAT(collapsedFrame(metrics, {.depth = 1}), RectNear(Rect{98.8, 64, 210.4, 172.8}));
    EXPECT_THAT(collapsedFrame(metrics, {.depth = 2}), RectNear(Rect{103.6, 84, 200.8, 165.6}));
    EXPECT_THAT(collapsedFrame(metrics, {.depth = 3}), RectNear(Rect{108.4, 104, 191.2, 158.4}));
}

TEST(StackGeometryTest, layersBeyondTheDeepestShareItsPlace)
{
    EXPECT_EQ(collapsedFrame(metrics, {.depth = 9}), collapsedFrame(metrics, {.depth = 3}));
    EXPECT_EQ(collapsedFrame(metrics, {.depth = 9, .maxDepth = 2}), collapsedFrame(metrics, {.depth = 2}));
    EXPECT_EQ(collapsedFrame(metrics, {.depth = -1}), collapsedFrame(metrics, {.depth = 0}));
    EXPECT_EQ(collapsedFrame(metrics, {.depth = -1, .maxDepth = 2}), collapsedFrame(metrics, {.depth = 0}));
}

TEST(StackGeometryTest, layersNeverShrinkBelowHalf)
{
    // The ninth layer would be at 46 %.
    const Rect card = collapsedFrame(metrics, {.depth = 9, .maxDepth = 100}).insetBy(30);
    EXPECT_THAT(card, RectNear(Rect{164, 254, 80, 60}));
}

TEST(StackGeometryTest, aPeekingDeckShows28PointsAboveTheVisibleFramesBottom)
{
    EXPECT_THAT(collapsedFrame(metrics, {.depth = 0, .isPeeking = true}), RectNear(Rect{94, -72, 220, 180}));
    EXPECT_THAT(collapsedFrame(metrics, {.depth = 2, .isPeeking = true}), RectNear(Rect{103.6, -32, 200.8, 165.6}));
    EXPECT_DOUBLE_EQ(collapsedFrame(metrics, {.isPeeking = true}).insetBy(30).maxY(), 50 + 28);
}

TEST(StackGeometryTest, individualCardsStandAboveTheHighestLayerOfTheDeck)
{
    // Tops of the layers: 194, 206.8, 219.6.
    EXPECT_THAT(overflowIndividualFrame(metrics, 0, 1), RectNear(Rect{94, 176, 220, 180}));
    EXPECT_THAT(overflowIndividualFrame(metrics, 0, 2), RectNear(Rect{94, 188.8, 220, 180}));
    EXPECT_THAT(overflowIndividualFrame(metrics, 0, 3), RectNear(Rect{94, 201.6, 220, 180}));
    EXPECT_THAT(overflowIndividualFrame(metrics, 2, 30), RectNear(Rect{94, 465.6, 220, 180}));
}

TEST(StackGeometryTest, whatFitsStandsInSlotsTheNewestHighest)
{
    EXPECT_THAT(frames({.count = 3}), ElementsAre(slotFrame(0), slotFrame(1), slotFrame(2)));
    EXPECT_THAT(frames({.count = 4}), ElementsAre(slotFrame(0), slotFrame(1), slotFrame(2), slotFrame(3)));
    EXPECT_THAT(behind({.count = 4}), ElementsAre(false, false, false, false));
    EXPECT_TRUE(frames({.count = 0}).empty());
}

TEST(StackGeometryTest, ofFiveCardsOnFourPlacesTheOldestTwoShareADeck)
{
    EXPECT_THAT(frames({.count = 5}),
                ElementsAre(RectNear(deckFrame(1)), RectNear(deckFrame(0)), RectNear(Rect{94, 188.8, 220, 180}),
                            RectNear(Rect{94, 320.8, 220, 180}), RectNear(Rect{94, 452.8, 220, 180})));
    EXPECT_THAT(behind({.count = 5}), ElementsAre(true, false, false, false, false));
}

TEST(StackGeometryTest, ofSixCardsOnFourPlacesTheOldestThreeShareADeck)
{
    EXPECT_THAT(frames({.count = 6}),
                ElementsAre(RectNear(deckFrame(2)), RectNear(deckFrame(1)), RectNear(deckFrame(0)),
                            RectNear(aboveDeckFrame(0)), RectNear(aboveDeckFrame(1)), RectNear(aboveDeckFrame(2))));
    EXPECT_THAT(behind({.count = 6}), ElementsAre(true, true, false, false, false, false));
    EXPECT_THAT(covered({.count = 6}), ElementsAre(false, false, false, false, false, false));
}

TEST(StackGeometryTest, ofTenCardsOnFourPlacesTheOldestSevenShareThreeLayers)
{
    EXPECT_THAT(frames({.count = 10}),
                ElementsAre(RectNear(deckFrame(2)), RectNear(deckFrame(2)), RectNear(deckFrame(2)),
                            RectNear(deckFrame(2)), RectNear(deckFrame(2)), RectNear(deckFrame(1)),
                            RectNear(deckFrame(0)), RectNear(aboveDeckFrame(0)), RectNear(aboveDeckFrame(1)),
                            RectNear(aboveDeckFrame(2))));
    EXPECT_THAT(behind({.count = 10}), ElementsAre(true, true, true, true, true, true, false, false, false, false));
    EXPECT_THAT(covered({.count = 10}), ElementsAre(true, true, true, true, false, false, false, false, false, false));
}

TEST(StackGeometryTest, aCollapsedColumnIsOneDeckOfFourLayers)
{
    const StackState state{.count = 6, .isCollapsed = true};
    EXPECT_THAT(frames(state),
                ElementsAre(RectNear(peekingFrame(3)), RectNear(peekingFrame(3)), RectNear(peekingFrame(3)),
                            RectNear(peekingFrame(2)), RectNear(peekingFrame(1)), RectNear(peekingFrame(0))));
    EXPECT_THAT(behind(state), ElementsAre(true, true, true, true, true, false));
    EXPECT_THAT(covered(state), ElementsAre(true, true, false, false, false, false));
}

TEST(StackGeometryTest, aRevealedDeckIsLiftedIntoView)
{
    EXPECT_THAT(frames({.count = 2, .isCollapsed = true, .isDeckRevealed = true}),
                ElementsAre(RectNear(deckFrame(1)), RectNear(deckFrame(0))));
}

TEST(StackGeometryTest, withoutAScreenEveryFrameIsZero)
{
    EXPECT_EQ(frameForSlot(noScreen, 3), Rect{});
    EXPECT_EQ(collapsedFrame(noScreen, {.depth = 2}), Rect{});
    EXPECT_EQ(overflowIndividualFrame(noScreen, 1, 3), Rect{});
    EXPECT_EQ(targetFrame(noScreen, {.count = 10}, 0).frame, Rect{});
    EXPECT_EQ(collapsePillPanelFrame(noScreen, {.count = 2}), Rect{});
    EXPECT_EQ(clearAllPillPanelFrame(noScreen, {.count = 2}), Rect{});
}

TEST(StackGeometryTest, theCollapsePillHangsOnTheColumnsBottomEdge)
{
    // Centred on (204, 74).
    EXPECT_THAT(*collapsePillPanelFrame(metrics, {.count = 1}), RectNear(Rect{170, 50, 68, 48}));
    EXPECT_THAT(*collapsePillPanelFrame(metrics, {.count = 10}), RectNear(Rect{170, 50, 68, 48}));
    EXPECT_FALSE(collapsePillPanelFrame(metrics, {.count = 0}));
}

TEST(StackGeometryTest, theCollapsePillSitsOnTheFrontCardOfACollapsedDeck)
{
    // The front card's top edge is at 78 while it peeks, at 194 once it is revealed.
    EXPECT_THAT(*collapsePillPanelFrame(metrics, {.count = 6, .isCollapsed = true}), RectNear(Rect{170, 54, 68, 48}));
    EXPECT_THAT(*collapsePillPanelFrame(metrics, {.count = 6, .isCollapsed = true, .isDeckRevealed = true}),
                RectNear(Rect{170, 170, 68, 48}));
}

TEST(StackGeometryTest, theClearAllPillFloatsTenPointsAboveTheColumn)
{
    // Three cards end at 458; the pill's centre is 23 higher.
    EXPECT_THAT(*clearAllPillPanelFrame(metrics, {.count = 3}), RectNear(Rect{126, 456, 156, 50}));
}

TEST(StackGeometryTest, theClearAllPillStaysFourPointsBelowTheVisibleFramesTop)
{
    // Four cards end at 590, six at 615.6, the visible frame at 614.
    const Rect four = *clearAllPillPanelFrame(metrics, {.count = 4});
    EXPECT_DOUBLE_EQ(four.insetBy(12).maxY(), 610);
    const Rect six = *clearAllPillPanelFrame(metrics, {.count = 6});
    EXPECT_DOUBLE_EQ(six.insetBy(12).maxY(), 610);
    EXPECT_DOUBLE_EQ(six.midX(), 204);
}

TEST(StackGeometryTest, thereIsNoClearAllPillForOneCardOrACollapsedColumn)
{
    EXPECT_FALSE(clearAllPillPanelFrame(metrics, {.count = 1}));
    EXPECT_FALSE(clearAllPillPanelFrame(metrics, {.count = 6, .isCollapsed = true}));
    EXPECT_TRUE(clearAllPillPanelFrame(metrics, {.count = 2}));
}

TEST(StackGeometryTest, theClearAllPillClearsEveryLayerOfADeckThatIsTheWholeColumn)
{
    // A column that holds one card: everything is in the deck, whose third layer ends at 219.6.
    StackMetrics narrow = metrics;
    narrow.capacity = 1;
    EXPECT_THAT(*clearAllPillPanelFrame(narrow, {.count = 5}), RectNear(Rect{126, 217.6, 156, 50}));
}

} // namespace
} // namespace lumenfold::test
