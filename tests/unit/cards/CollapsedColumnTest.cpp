#include "tests/unit/cards/CardsFixture.h"

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::Optional;

class CollapsedColumnTest : public CardsTest {
protected:
    void showCollapsed(int count)
    {
        showCards(count);
        controller->toggleCollapse();
        settle();
    }
};

TEST_F(CollapsedColumnTest, collapsingMakesADeckThatPeeksOutOfTheScreensEdge)
{
    showCards(3);

    controller->toggleCollapse();
    EXPECT_TRUE(controller->isCollapsed());
    EXPECT_FALSE(controller->isDeckRevealed());
    EXPECT_THAT(panel(u"1"_s).animations().back(),
                AllOf(Field(&PanelAnimation::frame, Optional(RectNear(peekingFrame(2)))),
                      Field(&PanelAnimation::duration, 200ms)));
    settle();
    EXPECT_THAT(columnFrames(),
                ElementsAre(RectNear(peekingFrame(2)), RectNear(peekingFrame(1)), RectNear(peekingFrame(0))));
    EXPECT_TRUE(model(u"1"_s).deckBehind());
    EXPECT_TRUE(model(u"1"_s).collapsed());
    EXPECT_FALSE(model(u"3"_s).deckBehind());
    EXPECT_TRUE(model(u"3"_s).collapsed());
}

TEST_F(CollapsedColumnTest, fourLayersOfACollapsedDeckAreOnScreen)
{
    showCollapsed(6);
    EXPECT_EQ(stacking(), QStringList({u"3"_s, u"4"_s, u"5"_s, u"6"_s}));
}

TEST_F(CollapsedColumnTest, expandingPutsEveryCardBack)
{
    showCollapsed(3);

    controller->toggleCollapse();
    settle();
    EXPECT_FALSE(controller->isCollapsed());
    EXPECT_THAT(columnFrames(), ElementsAre(slotFrame(0), slotFrame(1), slotFrame(2)));
    EXPECT_EQ(stacking(), QStringList({u"1"_s, u"2"_s, u"3"_s}));
    EXPECT_FALSE(model(u"1"_s).deckBehind());
    EXPECT_FALSE(model(u"1"_s).collapsed());
}

TEST_F(CollapsedColumnTest, cardsThatWereCoveredAreShownBeforeTheySlideOut)
{
    screens.setScreens({FakeScreens::plainScreen(1, {0, 0, 1000, 875})});
    showCollapsed(6);
    EXPECT_EQ(stacking(), QStringList({u"3"_s, u"4"_s, u"5"_s, u"6"_s}));

    controller->toggleCollapse();
    EXPECT_EQ(stacking(), QStringList({u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s}));
    settle();
    EXPECT_EQ(stacking(), QStringList({u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s}));
}

TEST_F(CollapsedColumnTest, expandingAtOnceLeavesNoCardBehind)
{
    screens.setScreens({FakeScreens::plainScreen(1, {0, 0, 1000, 875})});
    showCards(6);

    controller->toggleCollapse();
    queue.advance(100ms);
    controller->toggleCollapse();
    settle();
    EXPECT_EQ(stacking(), QStringList({u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s}));
}

TEST_F(CollapsedColumnTest, anEmptyColumnIsNotCollapsed)
{
    controller->toggleCollapse();
    EXPECT_FALSE(controller->isCollapsed());

    controller->showPinnedCard(picture(8, 6));
    controller->toggleCollapse();
    EXPECT_FALSE(controller->isCollapsed());
}

TEST_F(CollapsedColumnTest, aNewCaptureExpandsTheColumnBeforeItIsPlaced)
{
    showCollapsed(3);

    controller->show(picture(8, 6), {.id = u"4"_s});
    EXPECT_FALSE(controller->isCollapsed());
    EXPECT_THAT(panel(u"4"_s).framesSet(), ElementsAre(RectNear(slotFrame(3))));
    EXPECT_THAT(panel(u"4"_s).frame(), RectNear(slotFrame(3)));
    settle();
    EXPECT_THAT(columnFrames(), ElementsAre(slotFrame(0), slotFrame(1), slotFrame(2), slotFrame(3)));
    EXPECT_FALSE(model(u"1"_s).collapsed());
}

TEST_F(CollapsedColumnTest, aCardOfTheDeckThatIsClickedLiftsTheDeckIntoView)
{
    showCollapsed(3);

    model(u"2"_s).onBringToFront();
    settle();
    EXPECT_TRUE(controller->isCollapsed());
    EXPECT_TRUE(controller->isDeckRevealed());
    EXPECT_EQ(ids(), QStringList({u"1"_s, u"3"_s, u"2"_s}));
    EXPECT_THAT(columnFrames(), ElementsAre(RectNear(deckFrame(2)), RectNear(deckFrame(1)), RectNear(deckFrame(0))));
    EXPECT_TRUE(model(u"1"_s).deckBehind());
    EXPECT_FALSE(model(u"1"_s).collapsed());
    EXPECT_EQ(stacking(), QStringList({u"1"_s, u"3"_s, u"2"_s}));
}

TEST_F(CollapsedColumnTest, aRevealedDeckSinksWhenThePointerLeaves)
{
    showCollapsed(3);
    movePointerTo({200, 60});
    model(u"2"_s).onBringToFront();
    settle();

    // 50 points around the panels still count: the rightmost ends at 314.
    movePointerTo({363, 100});
    EXPECT_TRUE(controller->isDeckRevealed());
    movePointerTo({365, 100});
    EXPECT_FALSE(controller->isDeckRevealed());
    EXPECT_TRUE(controller->isCollapsed());
    settle();
    EXPECT_THAT(columnFrames(),
                ElementsAre(RectNear(peekingFrame(2)), RectNear(peekingFrame(1)), RectNear(peekingFrame(0))));
}

TEST_F(CollapsedColumnTest, movingThePointerAboutElsewhereMovesNothing)
{
    showCollapsed(3);
    for (FakePanel *each : panels.panels()) {
        each->forgetHistory();
    }

    movePointerTo({900, 500});
    movePointerTo({200, 60});
    movePointerTo({900, 500});
    for (const FakePanel *each : panels.panels()) {
        EXPECT_THAT(each->animations(), IsEmpty());
    }
}

TEST_F(CollapsedColumnTest, expandingARevealedDeckForgetsThatItWasRevealed)
{
    showCollapsed(3);
    model(u"1"_s).onBringToFront();

    controller->toggleCollapse();
    EXPECT_FALSE(controller->isDeckRevealed());
    controller->toggleCollapse();
    EXPECT_FALSE(controller->isDeckRevealed());
}

TEST_F(CollapsedColumnTest, theColumnIsExpandedAgainOnceItsLastCardIsGone)
{
    showCollapsed(1);

    model(u"1"_s).onDismiss();
    EXPECT_FALSE(controller->isCollapsed());
}

} // namespace
} // namespace lumenfold::test
