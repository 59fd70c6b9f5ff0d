#include "tests/unit/cards/CardsFixture.h"

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HiddenForCaptureTest : public CardsTest {};

TEST_F(HiddenForCaptureTest, noCardIsOnScreenWhileACaptureIsTaken)
{
    showCards(3);
    controller->showPinnedCard(picture(8, 6), {.id = u"pinned"_s});

    controller->setHiddenForCapture(true);
    EXPECT_THAT(stacking(), IsEmpty());
    EXPECT_EQ(ids(), QStringList({u"1"_s, u"2"_s, u"3"_s, u"pinned"_s}));
}

TEST_F(HiddenForCaptureTest, afterwardsEveryCardIsWhereItWas)
{
    showCards(3);
    controller->showPinnedCard(picture(8, 6), {.id = u"pinned"_s});
    const Rect where = panel(u"pinned"_s).frame();

    controller->setHiddenForCapture(true);
    controller->setHiddenForCapture(false);
    settle();
    EXPECT_EQ(stacking(), QStringList({u"pinned"_s, u"1"_s, u"2"_s, u"3"_s}));
    EXPECT_THAT(columnFrames(), ElementsAre(slotFrame(0), slotFrame(1), slotFrame(2)));
    EXPECT_EQ(panel(u"pinned"_s).frame(), where);
}

TEST_F(HiddenForCaptureTest, theCardOfTheCaptureAppearsAboveTheOthers)
{
    showCards(2);

    controller->setHiddenForCapture(true);
    controller->setHiddenForCapture(false);
    controller->show(picture(8, 6), {.id = u"3"_s});
    settle();
    EXPECT_EQ(stacking(), QStringList({u"1"_s, u"2"_s, u"3"_s}));
    EXPECT_EQ(panel(u"3"_s).alpha(), 1);
}

TEST_F(HiddenForCaptureTest, aCardThatIsAddedMeanwhileAppearsWithTheOthers)
{
    showCards(4);

    controller->setHiddenForCapture(true);
    controller->show(picture(8, 6), {.id = u"5"_s});
    settle();
    EXPECT_THAT(stacking(), IsEmpty());

    controller->setHiddenForCapture(false);
    settle();
    EXPECT_EQ(stacking(), QStringList({u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s}));
    EXPECT_EQ(panel(u"5"_s).alpha(), 1);
    EXPECT_THAT(panel(u"5"_s).frame(), RectNear(Rect{94, 452.8, 220, 180}));
    EXPECT_THAT(panel(u"1"_s).frame(), RectNear(deckFrame(1)));
}

TEST_F(HiddenForCaptureTest, aCardThatIsPinnedMeanwhileAppearsWithTheOthers)
{
    controller->setHiddenForCapture(true);
    controller->showPinnedCard(picture(8, 6), {.id = u"pinned"_s});
    EXPECT_THAT(stacking(), IsEmpty());

    controller->setHiddenForCapture(false);
    EXPECT_EQ(stacking(), QStringList({u"pinned"_s}));
}

TEST_F(HiddenForCaptureTest, nothingThatMovesTheColumnShowsACard)
{
    showCards(6);

    controller->setHiddenForCapture(true);
    model(u"1"_s).onBringToFront();
    controller->toggleCollapse();
    model(u"2"_s).onDismiss();
    screens.setScreens({screenOfFourCards()});
    controller->toggleCollapse();
    settle();
    EXPECT_THAT(stacking(), IsEmpty());

    controller->setHiddenForCapture(false);
    settle();
    EXPECT_EQ(stacking(), QStringList({u"3"_s, u"4"_s, u"5"_s, u"6"_s, u"1"_s}));
}

TEST_F(HiddenForCaptureTest, aCardThatIsJustLeavingIsGoneAtOnce)
{
    showCards(1);
    const FakePanel &leaving = panel(u"1"_s);
    model(u"1"_s).onDismiss();
    EXPECT_TRUE(leaving.isVisible());

    controller->setHiddenForCapture(true);
    EXPECT_FALSE(leaving.isVisible());
    controller->setHiddenForCapture(false);
    EXPECT_THAT(stacking(), IsEmpty());
    settle();
    EXPECT_THAT(panels.panels(), IsEmpty());
}

TEST_F(HiddenForCaptureTest, aCardIsShownEvenIfItBecameCoveredAndUncoveredMeanwhile)
{
    showCards(4);

    controller->setHiddenForCapture(true);
    controller->toggleCollapse();
    settle();
    controller->toggleCollapse();
    settle();
    controller->setHiddenForCapture(false);
    EXPECT_EQ(stacking(), QStringList({u"1"_s, u"2"_s, u"3"_s, u"4"_s}));
}

TEST_F(HiddenForCaptureTest, coveredCardsStayOffTheScreen)
{
    showCards(10);

    controller->setHiddenForCapture(true);
    controller->setHiddenForCapture(false);
    EXPECT_EQ(stacking(), QStringList({u"5"_s, u"6"_s, u"7"_s, u"8"_s, u"9"_s, u"10"_s}));
}

TEST_F(HiddenForCaptureTest, showingCardsThatWereNeverHiddenChangesNothing)
{
    showCards(2);

    controller->setHiddenForCapture(false);
    EXPECT_EQ(stacking(), QStringList({u"1"_s, u"2"_s}));
}

} // namespace
} // namespace lumenfold::test
