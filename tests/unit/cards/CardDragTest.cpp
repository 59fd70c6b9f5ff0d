#include "tests/unit/cards/CardsFixture.h"

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using ::testing::Contains;
using ::testing::IsEmpty;

class CardDragTest : public CardsTest {
protected:
    /// A pinned card of 200 x 100 at (352, 252), in its panel.
    void showPinned()
    {
        controller->showPinnedCard(picture(200, 100), {.frame = Rect{300, 200, 304, 204}, .id = u"pinned"_s});
        settle();
        store.calls.clear();
    }
};

TEST_F(CardDragTest, aPinnedCardFollowsTheDragFromWhereItBegan)
{
    showPinned();
    PreviewModel &dragged = model(u"pinned"_s);

    dragged.onPanDragBegan();
    dragged.onPanDragChanged({5, -7});
    EXPECT_EQ(panel(u"pinned"_s).frame(), (Rect{305, 193, 304, 204}));
    dragged.onPanDragChanged({12, 20});
    EXPECT_EQ(panel(u"pinned"_s).frame(), (Rect{312, 220, 304, 204}));
    EXPECT_THAT(panel(u"pinned"_s).animations(), IsEmpty());
}

TEST_F(CardDragTest, theManifestIsWrittenWhenAMoveEnds)
{
    showPinned();
    model(u"pinned"_s).onPanDragBegan();
    model(u"pinned"_s).onPanDragChanged({-500, 0});
    EXPECT_THAT(store.calls, IsEmpty());

    model(u"pinned"_s).onPanDragEnded();
    EXPECT_EQ(store.calls, QStringList({u"manifest"_s}));
    EXPECT_EQ(store.manifest.at(0).frame, (Rect{-200, 200, 304, 204}));
}

TEST_F(CardDragTest, aDragThatHasNotBegunMovesNothing)
{
    showPinned();

    model(u"pinned"_s).onPanDragChanged({5, 5});
    EXPECT_EQ(panel(u"pinned"_s).frame(), (Rect{300, 200, 304, 204}));

    model(u"pinned"_s).onPanDragBegan();
    model(u"pinned"_s).onPanDragEnded();
    model(u"pinned"_s).onPanDragChanged({5, 5});
    EXPECT_EQ(panel(u"pinned"_s).frame(), (Rect{300, 200, 304, 204}));
}

TEST_F(CardDragTest, aDragBringsAStackCardToTheFrontAndTheNextLayoutPutsItBack)
{
    showCards(2);

    model(u"1"_s).onPanDragBegan();
    EXPECT_EQ(ids(), QStringList({u"2"_s, u"1"_s}));
    settle();
    model(u"1"_s).onPanDragChanged({300, 0});
    model(u"1"_s).onPanDragEnded();
    controller->show(picture(8, 6), {.id = u"3"_s});
    settle();
    EXPECT_THAT(columnFrames(), ::testing::ElementsAre(slotFrame(0), slotFrame(1), slotFrame(2)));
}

TEST_F(CardDragTest, aPinnedCardIsResizedInItsOwnProportions)
{
    showPinned();
    PreviewModel &dragged = model(u"pinned"_s);

    dragged.onResizeDragBegan(PreviewResizeCorner::bottomRight);
    dragged.onResizeDragChanged(PreviewResizeCorner::bottomRight, {20, -10});
    // The total since the drag began counts, not the sum of what was reported.
    dragged.onResizeDragChanged(PreviewResizeCorner::bottomRight, {100, -50});
    EXPECT_THAT(panel(u"pinned"_s).frame(), RectNear(Rect{300, 150, 404, 254}));
    EXPECT_EQ(dragged.cardSize(), (Size{160, 120}));
    EXPECT_THAT(store.calls, IsEmpty());

    dragged.onResizeDragEnded();
    EXPECT_EQ(dragged.cardSize(), (Size{300, 150}));
    EXPECT_EQ(store.calls, QStringList({u"manifest"_s}));
}

TEST_F(CardDragTest, theNextResizeStartsFromWhereTheLastOneEnded)
{
    showPinned();
    PreviewModel &dragged = model(u"pinned"_s);
    dragged.onResizeDragBegan(PreviewResizeCorner::topRight);
    dragged.onResizeDragChanged(PreviewResizeCorner::topRight, {100, 50});
    dragged.onResizeDragEnded();

    dragged.onResizeDragChanged(PreviewResizeCorner::topRight, {100, 50});
    EXPECT_THAT(panel(u"pinned"_s).frame(), RectNear(Rect{300, 200, 504, 304}));
}

TEST_F(CardDragTest, aStackCardIsResizedAtFourToThree)
{
    showCards(1);
    PreviewModel &dragged = model(u"1"_s);
    const Rect before = panel(u"1"_s).frame();

    dragged.onResizeDragBegan(PreviewResizeCorner::bottomLeft);
    dragged.onResizeDragChanged(PreviewResizeCorner::bottomLeft, {-40, -30});
    const Rect after = panel(u"1"_s).frame();
    EXPECT_DOUBLE_EQ(after.width, before.width + 40);
    EXPECT_DOUBLE_EQ(after.height, before.height + 30);
    EXPECT_DOUBLE_EQ(after.maxX(), before.maxX());
    EXPECT_DOUBLE_EQ(after.maxY(), before.maxY());
}

TEST_F(CardDragTest, aResizeThatHasNotBegunStartsWhereTheCardIs)
{
    showPinned();

    model(u"pinned"_s).onResizeDragChanged(PreviewResizeCorner::topRight, {100, 50});
    EXPECT_THAT(panel(u"pinned"_s).frame(), RectNear(Rect{300, 200, 404, 254}));
    model(u"pinned"_s).onResizeDragChanged(PreviewResizeCorner::topRight, {100, 50});
    EXPECT_THAT(panel(u"pinned"_s).frame(), RectNear(Rect{300, 200, 504, 304}));
}

} // namespace
} // namespace lumenfold::test
