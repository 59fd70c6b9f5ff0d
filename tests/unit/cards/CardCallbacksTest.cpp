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

class CardCallbacksTest : public CardsTest {};

TEST_F(CardCallbacksTest, aDismissedCardFadesAwayWhereItStands)
{
    showCards(1);
    FakePanel &leaving = panel(u"1"_s);
    leaving.forgetHistory();

    model(u"1"_s).onDismiss();
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_THAT(leaving.animations(),
                ElementsAre(AllOf(Field(&PanelAnimation::alpha, Optional(0.0)),
                                  Field(&PanelAnimation::frame, std::nullopt), Field(&PanelAnimation::duration, 180ms),
                                  Field(&PanelAnimation::curve, AnimationCurve::easeIn))));
    queue.advance(179ms);
    EXPECT_TRUE(leaving.isVisible());
    settle();
    EXPECT_THAT(panels.panels(), IsEmpty());
}

TEST_F(CardCallbacksTest, aCardThrownAwaySlidesToTheLeftByItsOwnWidth)
{
    showCards(1);
    FakePanel &leaving = panel(u"1"_s);
    leaving.forgetHistory();

    controller->dismiss(card(u"1"_s), DismissMotion::slideLeft, RecordUndo::yes);
    EXPECT_THAT(leaving.animations(),
                ElementsAre(AllOf(Field(&PanelAnimation::alpha, Optional(0.0)),
                                  Field(&PanelAnimation::frame, Optional(RectNear(slotFrame(0).offsetBy(-220, 0)))),
                                  Field(&PanelAnimation::duration, 220ms),
                                  Field(&PanelAnimation::curve, AnimationCurve::easeIn))));
    queue.advance(219ms);
    EXPECT_TRUE(leaving.isVisible());
    settle();
    EXPECT_THAT(panels.panels(), IsEmpty());
}

TEST_F(CardCallbacksTest, theOthersCloseTheGapWithoutWaiting)
{
    showCards(3);

    model(u"1"_s).onDismiss();
    EXPECT_THAT(panel(u"2"_s).animations().back().frame, Optional(RectNear(slotFrame(0))));
    settle();
    EXPECT_THAT(columnFrames(), ElementsAre(slotFrame(0), slotFrame(1)));
}

TEST_F(CardCallbacksTest, aCardThatFadesStaysAboveTheOthersUntilItIsGone)
{
    showCards(6);
    controller->toggleCollapse();
    settle();

    model(u"6"_s).onDismiss();
    EXPECT_EQ(stacking().last(), u"?"_s);
    settle();
    EXPECT_EQ(stacking().last(), u"5"_s);
}

TEST_F(CardCallbacksTest, dismissingACardTwiceRemovesItOnce)
{
    showCards(2);
    const auto leaving = views.at(0);

    leaving->onDismiss();
    store.calls.clear();
    leaving->onDismiss();
    EXPECT_EQ(ids(), QStringList({u"2"_s}));
    EXPECT_THAT(store.calls, IsEmpty());
}

TEST_F(CardCallbacksTest, aCardIsReleasedOnlyAfterItsPanelHasFinished)
{
    showCards(1);
    const std::weak_ptr<PreviewModel> leaving = views.at(0);

    views.at(0)->onDismiss();
    queue.advance(179ms);
    EXPECT_FALSE(leaving.expired());
    settle();
    EXPECT_TRUE(leaving.expired());
}

TEST_F(CardCallbacksTest, aDismissedCardThatSomebodyHoldsIsOffTheScreen)
{
    showCards(1);
    const CardPointer held = card(u"1"_s);

    model(u"1"_s).onDismiss();
    queue.advance(180ms);
    EXPECT_FALSE(held->panel->isVisible());
}

TEST_F(CardCallbacksTest, pinningLeavesTheCardAndAddsAPinnedOneOfItsImage)
{
    const Image image = picture(8, 6);
    const Image source = picture(16, 12);
    controller->show(image, {.editorSourceImage = source, .editorSourceId = u"source"_s, .id = u"1"_s});

    model(u"1"_s).onPinRequested();
    ASSERT_THAT(controller->cards(), SizeIs(2));
    const PreviewModel &pinned = *controller->cards().back()->model;
    EXPECT_EQ(pinned.variant(), PreviewCardVariant::pinned);
    EXPECT_EQ(pinned.image(), image);
    EXPECT_EQ(pinned.editorSourceImage(), source);
    EXPECT_EQ(pinned.editorSourceId(), u"source"_s);
    EXPECT_NE(pinned.screenshotId(), u"1"_s);
    EXPECT_THAT(controller->stackCards(), SizeIs(1));
}

TEST_F(CardCallbacksTest, expandingOpensTheFullSizePreview)
{
    const Image image = picture(8, 6);
    controller->show(image, {.id = u"1"_s});

    model(u"1"_s).onExpandRequested();
    EXPECT_THAT(preview.presented, ElementsAre(image));
}

TEST_F(CardCallbacksTest, aCardResizedByItsModelKeepsItsBottomLeftCorner)
{
    controller->showPinnedCard(picture(400, 100), {.id = u"pinned"_s});
    const Rect before = panel(u"pinned"_s).frame();

    model(u"pinned"_s).setCardWidth(600);
    EXPECT_THAT(panel(u"pinned"_s).frame(), RectNear(Rect{before.x, before.y, 704, 254}));
    EXPECT_THAT(panel(u"pinned"_s).animations(), IsEmpty());
}

TEST_F(CardCallbacksTest, withoutWhatIsMissingACardStillComesAndGoes)
{
    makeControllerWithoutExtras();
    showCards(2);

    model(u"1"_s).onExpandRequested();
    model(u"1"_s).onEditRequested();
    model(u"1"_s).onPinRequested();
    controller->restore();
    controller->persistManifest();
    EXPECT_FALSE(controller->restoreLastDismissed());
    EXPECT_THAT(controller->cards(), SizeIs(3));
    model(u"1"_s).onDismiss();
    EXPECT_THAT(controller->cards(), SizeIs(2));
    EXPECT_THAT(preview.presented, IsEmpty());
    EXPECT_THAT(editor.sessions, IsEmpty());
}

TEST_F(CardCallbacksTest, callbacksOfACardWhoseControllerIsGoneDoNothing)
{
    showCards(1);
    const std::shared_ptr<PreviewModel> held = views.at(0);
    controller.reset();

    held->onDismiss();
    held->onPinRequested();
    held->onEditRequested();
    held->onBringToFront();
    held->onExpandRequested();
    held->onPanDragBegan();
    held->onPanDragChanged({5, 5});
    held->onPanDragEnded();
    held->onResizeDragBegan(PreviewResizeCorner::topLeft);
    held->onResizeDragChanged(PreviewResizeCorner::topLeft, {5, 5});
    held->onResizeDragEnded();
    held->setCardWidth(500);
    EXPECT_THAT(panels.panels(), IsEmpty());
    EXPECT_THAT(preview.presented, IsEmpty());
    EXPECT_THAT(editor.sessions, IsEmpty());
}

TEST_F(CardCallbacksTest, callbacksOfACardThatIsGoneDoNothing)
{
    showCards(2);
    const std::shared_ptr<PreviewModel> held = views.at(0);
    held->onDismiss();
    settle();

    held->onPinRequested();
    held->onBringToFront();
    held->onPanDragBegan();
    held->onExpandRequested();
    EXPECT_EQ(ids(), QStringList({u"2"_s}));
    EXPECT_THAT(preview.presented, IsEmpty());
}

} // namespace
} // namespace lumenfold::test
