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
using ::testing::SizeIs;

class ColumnTest : public CardsTest {};

TEST_F(ColumnTest, nothingIsShownBeforeTheFirstCapture)
{
    EXPECT_THAT(panels.panels(), IsEmpty());
    EXPECT_THAT(monitors.globalMasks(), IsEmpty());
}

TEST_F(ColumnTest, aCaptureBecomesAFloatingPanelInTheLowestSlot)
{
    controller->show(picture(8, 6));

    ASSERT_THAT(panels.panels(), SizeIs(1));
    const FakePanel &shown = *panels.lastPanel();
    EXPECT_EQ(shown.options(), (PanelOptions{.level = PanelLevel::floating,
                                             .keyPolicy = PanelKeyPolicy::never,
                                             .constraint = PanelConstraint::constrained,
                                             .transparentMargin = 30,
                                             .title = u"Screenshot"_s}));
    EXPECT_THAT(shown.frame(), RectNear(slotFrame(0)));
    EXPECT_TRUE(shown.isVisible());
    EXPECT_EQ(views.last()->variant(), PreviewCardVariant::stack);
}

TEST_F(ColumnTest, aNewCardFadesInWhereItStands)
{
    controller->show(picture(8, 6));
    FakePanel &shown = *panels.lastPanel();

    EXPECT_EQ(shown.alpha(), 0);
    EXPECT_THAT(shown.animations(),
                ElementsAre(AllOf(Field(&PanelAnimation::alpha, Optional(1.0)),
                                  Field(&PanelAnimation::frame, std::nullopt), Field(&PanelAnimation::duration, 180ms),
                                  Field(&PanelAnimation::curve, AnimationCurve::standard))));
    queue.advance(179ms);
    EXPECT_EQ(shown.alpha(), 0.5);
    queue.advance(1ms);
    EXPECT_EQ(shown.alpha(), 1);
    EXPECT_THAT(shown.frame(), RectNear(slotFrame(0)));
}

TEST_F(ColumnTest, cardsFillTheSlotsTheNewestHighestAndInFront)
{
    showCards(3);

    EXPECT_THAT(columnFrames(), ElementsAre(slotFrame(0), slotFrame(1), slotFrame(2)));
    EXPECT_EQ(stacking(), QStringList({u"1"_s, u"2"_s, u"3"_s}));
}

TEST_F(ColumnTest, aCardAtRestIsLeftAlone)
{
    showCards(2);
    panel(u"1"_s).forgetHistory();

    controller->show(picture(8, 6));
    EXPECT_THAT(panel(u"1"_s).animations(), IsEmpty());
    EXPECT_THAT(panel(u"1"_s).framesSet(), IsEmpty());
}

TEST_F(ColumnTest, theOthersSlideInTwoTenthsOfASecondWhenACardNeedsRoom)
{
    showCards(4);
    panel(u"2"_s).forgetHistory();

    controller->show(picture(8, 6));
    EXPECT_THAT(panel(u"2"_s).animations(),
                ElementsAre(AllOf(Field(&PanelAnimation::frame, Optional(RectNear(deckFrame(0)))),
                                  Field(&PanelAnimation::alpha, std::nullopt), Field(&PanelAnimation::duration, 200ms),
                                  Field(&PanelAnimation::curve, AnimationCurve::standard))));
    EXPECT_THAT(panel(u"2"_s).frame(), RectNear(slotFrame(1)));
    queue.advance(199ms);
    EXPECT_THAT(panel(u"2"_s).frame(), ::testing::Not(RectNear(deckFrame(0))));
    queue.advance(1ms);
    EXPECT_THAT(panel(u"2"_s).frame(), RectNear(deckFrame(0)));
}

TEST_F(ColumnTest, tenCardsOnFourPlacesStandAsADeckAndThreeCards)
{
    showCards(10);

    EXPECT_THAT(columnFrames(), ElementsAre(RectNear(deckFrame(2)), RectNear(deckFrame(2)), RectNear(deckFrame(2)),
                                            RectNear(deckFrame(2)), RectNear(deckFrame(2)), RectNear(deckFrame(1)),
                                            RectNear(deckFrame(0)), RectNear(aboveDeckFrame(0)),
                                            RectNear(aboveDeckFrame(1)), RectNear(aboveDeckFrame(2))));
    EXPECT_TRUE(model(u"1"_s).deckBehind());
    EXPECT_TRUE(model(u"6"_s).deckBehind());
    EXPECT_FALSE(model(u"7"_s).deckBehind());
    EXPECT_FALSE(model(u"10"_s).deckBehind());
    EXPECT_FALSE(model(u"1"_s).collapsed());
}

TEST_F(ColumnTest, cardsThatAreWhollyCoveredLeaveTheScreenOnceTheyAre)
{
    showCards(6);
    EXPECT_EQ(stacking(), QStringList({u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s}));

    controller->show(picture(8, 6), {.id = u"7"_s});
    // The second card is still on its way to where it covers the first.
    queue.advance(200ms);
    EXPECT_EQ(stacking(), QStringList({u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s, u"7"_s}));
    settle();
    EXPECT_EQ(stacking(), QStringList({u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s, u"7"_s}));
}

TEST_F(ColumnTest, aCoveredCardComesBackBeneathTheOthersWhenItIsNeeded)
{
    showCards(10);
    EXPECT_EQ(stacking(), QStringList({u"5"_s, u"6"_s, u"7"_s, u"8"_s, u"9"_s, u"10"_s}));

    model(u"10"_s).onDismiss();
    settle();
    EXPECT_EQ(stacking(), QStringList({u"4"_s, u"5"_s, u"6"_s, u"7"_s, u"8"_s, u"9"_s}));
    EXPECT_THAT(panel(u"4"_s).frame(), RectNear(deckFrame(2)));
    EXPECT_EQ(panel(u"4"_s).alpha(), 1);
}

TEST_F(ColumnTest, aCardBroughtToTheFrontBecomesTheNewest)
{
    showCards(3);

    model(u"1"_s).onBringToFront();
    settle();
    EXPECT_EQ(ids(), QStringList({u"2"_s, u"3"_s, u"1"_s}));
    EXPECT_THAT(columnFrames(), ElementsAre(slotFrame(0), slotFrame(1), slotFrame(2)));
    EXPECT_EQ(stacking(), QStringList({u"2"_s, u"3"_s, u"1"_s}));
    EXPECT_FALSE(controller->isDeckRevealed());
}

TEST_F(ColumnTest, bringingTheFrontCardToTheFrontChangesNothing)
{
    showCards(3);
    store.calls.clear();
    for (FakePanel *each : panels.panels()) {
        each->forgetHistory();
    }

    model(u"3"_s).onBringToFront();
    EXPECT_THAT(store.calls, IsEmpty());
    for (const FakePanel *each : panels.panels()) {
        EXPECT_THAT(each->animations(), IsEmpty());
        EXPECT_EQ(each->orderFrontCount(), 0);
    }
}

TEST_F(ColumnTest, theFrontCardIsTheNewestOfTheColumnWhateverIsPinnedAfterIt)
{
    showCards(2);
    controller->showPinnedCard(picture(8, 6), {.id = u"pinned"_s});
    store.calls.clear();

    model(u"2"_s).onBringToFront();
    EXPECT_EQ(ids(), QStringList({u"1"_s, u"2"_s, u"pinned"_s}));
    EXPECT_THAT(store.calls, IsEmpty());
}

TEST_F(ColumnTest, aPinnedCardIsNotBroughtToTheFront)
{
    controller->showPinnedCard(picture(8, 6), {.id = u"pinned"_s});
    showCards(1);

    model(u"pinned"_s).onBringToFront();
    EXPECT_EQ(ids(), QStringList({u"pinned"_s, u"1"_s}));
}

TEST_F(ColumnTest, aPinnedCardStandsInTheMiddleAtTwiceTheSizeInItsOwnProportions)
{
    controller->showPinnedCard(picture(400, 100));

    const FakePanel &shown = *panels.lastPanel();
    // 320 x 80 and 52 around it, about (600, 332).
    EXPECT_THAT(shown.frame(), RectNear(Rect{388, 240, 424, 184}));
    EXPECT_EQ(shown.options().constraint, PanelConstraint::unconstrained);
    EXPECT_EQ(shown.options().transparentMargin, 52);
    EXPECT_TRUE(shown.isVisible());
    EXPECT_EQ(shown.alpha(), 1);
    EXPECT_THAT(shown.animations(), IsEmpty());
    EXPECT_EQ(views.last()->variant(), PreviewCardVariant::pinned);
    EXPECT_EQ(views.last()->cardSize(), (Size{320, 80}));
}

TEST_F(ColumnTest, aPinnedCardStandsWhereItIsTold)
{
    controller->showPinnedCard(picture(400, 100), {.frame = Rect{-500, 2000, 404, 344}});

    EXPECT_EQ(panels.lastPanel()->frame(), (Rect{-500, 2000, 404, 344}));
    EXPECT_EQ(views.last()->cardSize(), (Size{160, 120}));
}

TEST_F(ColumnTest, pinnedCardsAreNotPartOfTheColumn)
{
    showCards(1);
    controller->showPinnedCard(picture(8, 6), {.id = u"pinned"_s});
    const Rect where = panel(u"pinned"_s).frame();
    controller->show(picture(8, 6), {.id = u"2"_s});
    settle();

    EXPECT_THAT(columnFrames(), ElementsAre(slotFrame(0), slotFrame(1)));
    EXPECT_EQ(panel(u"pinned"_s).frame(), where);
    EXPECT_EQ(ids(), QStringList({u"1"_s, u"pinned"_s, u"2"_s}));
    EXPECT_EQ(stacking(), QStringList({u"pinned"_s, u"1"_s, u"2"_s}));
}

TEST_F(ColumnTest, theColumnFollowsTheMainScreen)
{
    showCards(2);

    // The same height further to the right: 300 instead of 100.
    screens.setScreens({{.displayID = 1, .frame = {0, 0, 1300, 650}, .visibleFrame = {300, 50, 1000, 564}}});
    settle();
    EXPECT_THAT(columnFrames(), ElementsAre(slotFrame(0).offsetBy(200, 0), slotFrame(1).offsetBy(200, 0)));
}

TEST_F(ColumnTest, theColumnComesBackWithTheScreen)
{
    showCards(2);

    screens.setScreens({});
    settle();
    EXPECT_THAT(columnFrames(), ElementsAre(Rect{}, Rect{}));

    screens.setScreens({screenOfFourCards()});
    settle();
    EXPECT_THAT(columnFrames(), ElementsAre(slotFrame(0), slotFrame(1)));
}

TEST_F(ColumnTest, aCardShownWithoutAScreenTakesItsPlaceWhenThereIsOne)
{
    screens.setScreens({});
    controller->show(picture(8, 6));
    settle();
    EXPECT_THAT(columnFrames(), ElementsAre(Rect{}));

    screens.setScreens({screenOfFourCards()});
    settle();
    EXPECT_THAT(columnFrames(), ElementsAre(slotFrame(0)));
}

TEST_F(ColumnTest, thePointerIsWatchedWhileThereIsAColumn)
{
    showCards(2);
    EXPECT_THAT(monitors.globalMasks(), ElementsAre(0x400020U));
    EXPECT_THAT(monitors.localMasks(), ElementsAre(0x400020U));

    model(u"1"_s).onDismiss();
    EXPECT_THAT(monitors.globalMasks(), SizeIs(1));
    model(u"2"_s).onDismiss();
    EXPECT_THAT(monitors.globalMasks(), IsEmpty());
    EXPECT_THAT(monitors.localMasks(), IsEmpty());
}

TEST_F(ColumnTest, aPinnedCardIsNoReasonToGoOnWatching)
{
    showCards(1);
    model(u"1"_s).onPinRequested();

    model(u"1"_s).onDismiss();
    EXPECT_THAT(controller->cards(), SizeIs(1));
    EXPECT_THAT(monitors.globalMasks(), IsEmpty());
}

TEST_F(ColumnTest, thePointerIsNotWatchedForPinnedCards)
{
    controller->showPinnedCard(picture(8, 6));
    EXPECT_THAT(monitors.globalMasks(), IsEmpty());
}

TEST_F(ColumnTest, theControllerMayGoWhileThingsMove)
{
    showCards(8);
    controller->show(picture(8, 6));
    model(u"3"_s).onDismiss();

    controller.reset();
    EXPECT_THAT(panels.panels(), IsEmpty());
    EXPECT_THAT(monitors.globalMasks(), IsEmpty());
    screens.setScreens({});
    settle();
    EXPECT_EQ(queue.pendingCount(), 0U);
}

} // namespace
} // namespace lumenfold::test
