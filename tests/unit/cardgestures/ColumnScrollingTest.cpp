/// Scrolling over the column, as the controller sees it.
#include "tests/unit/cards/CardsFixture.h"

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::IsEmpty;

/// Inside the card in the lowest slot, and in the one above it.
constexpr Point lowest{200, 130};
constexpr Point second{200, 260};

class ColumnScrollingTest : public CardsTest {
protected:
    void scrollAt(Point location, double x, double y)
    {
        screens.setPointerLocation(location);
        m_time += 0.01;
        monitors.sendGlobal({.type = PointerEventType::scrollWheel,
                             .location = location,
                             .scrollingDeltaX = x,
                             .scrollingDeltaY = y,
                             .timestamp = m_time});
    }

    double m_time = 100;
};

TEST_F(ColumnScrollingTest, scrollingUpCollapsesAndDownExpands)
{
    showCards(3);

    scrollAt(lowest, 0, 10);
    EXPECT_FALSE(controller->isCollapsed());
    scrollAt(lowest, 0, 10);
    EXPECT_TRUE(controller->isCollapsed());
    EXPECT_TRUE(controller->controlState().isCollapsed());
    EXPECT_FALSE(controller->isDeckRevealed());
    settle();
    EXPECT_THAT(panel(u"3"_s).frame(), RectNear(peekingFrame(0)));

    scrollAt({200, 60}, 0, -18);
    EXPECT_FALSE(controller->isCollapsed());
    EXPECT_FALSE(controller->controlState().isCollapsed());
    settle();
    EXPECT_THAT(panel(u"3"_s).frame(), RectNear(slotFrame(2)));
}

TEST_F(ColumnScrollingTest, scrollingElsewhereDoesNothing)
{
    showCards(3);

    // 50 points to the right of the panels and a little further.
    scrollAt({365, 130}, 0, 100);
    EXPECT_FALSE(controller->isCollapsed());
    scrollAt({363, 130}, 0, 100);
    EXPECT_TRUE(controller->isCollapsed());
}

TEST_F(ColumnScrollingTest, aSwipeThrowsTheCardUnderThePointerAway)
{
    showCards(3);
    FakePanel &leaving = panel(u"2"_s);
    leaving.forgetHistory();

    scrollAt(second, -30, 0);
    scrollAt(second, -30, 0);
    EXPECT_EQ(ids(), QStringList({u"1"_s, u"3"_s}));
    ASSERT_EQ(leaving.animations().size(), 1U);
    EXPECT_THAT(leaving.animations().front().frame,
                ::testing::Optional(RectNear(slotFrame(1).offsetBy(-slotFrame(1).width, 0))));
    EXPECT_EQ(leaving.animations().front().duration, 220ms);

    EXPECT_TRUE(controller->restoreLastDismissed());
    EXPECT_EQ(ids(), QStringList({u"1"_s, u"3"_s, u"2"_s}));
}

TEST_F(ColumnScrollingTest, theRestOfASwipeSparesTheCardThatTakesThePlace)
{
    showCards(3);

    for (int notch = 0; notch < 20; ++notch) {
        scrollAt(lowest, -30, 0);
    }
    EXPECT_EQ(ids(), QStringList({u"2"_s, u"3"_s}));
    settle();
    m_time += 1;
    scrollAt(lowest, -60, 0);
    EXPECT_EQ(ids(), QStringList({u"3"_s}));
}

TEST_F(ColumnScrollingTest, theMarginAroundACardDoesNotBelongToIt)
{
    showCards(1);

    // The card reaches from 124 to 284.
    scrollAt({123, 130}, -100, 0);
    scrollAt({284, 130}, -100, 0);
    EXPECT_EQ(ids(), QStringList(u"1"_s));
    scrollAt({283, 130}, -100, 0);
    EXPECT_THAT(ids(), IsEmpty());
}

TEST_F(ColumnScrollingTest, ofADeckTheFrontCardIsThrownAway)
{
    showCards(6);

    // The deck of the three oldest, whose newest is in front.
    scrollAt(lowest, -60, 0);
    EXPECT_EQ(ids(), QStringList({u"1"_s, u"2"_s, u"4"_s, u"5"_s, u"6"_s}));
}

TEST_F(ColumnScrollingTest, aPinnedCardIsNotThrownAway)
{
    showCards(1);
    controller->showPinnedCard(picture(8, 6), {.frame = Rect{94, 44, 220, 180}, .id = u"pinned"_s});

    scrollAt(lowest, -60, 0);
    EXPECT_EQ(ids(), QStringList(u"pinned"_s));
}

TEST_F(ColumnScrollingTest, theCardsOfACollapsedColumnStay)
{
    showCards(3);
    controller->toggleCollapse();
    settle();

    scrollAt({200, 60}, -300, 0);
    EXPECT_EQ(ids().size(), 3);
}

TEST_F(ColumnScrollingTest, hiddenCardsDoNotMove)
{
    showCards(3);
    controller->setHiddenForCapture(true);

    scrollAt(lowest, -60, 0);
    scrollAt(lowest, 0, 60);
    EXPECT_EQ(ids().size(), 3);
    EXPECT_FALSE(controller->isCollapsed());
}

TEST_F(ColumnScrollingTest, aCoveredCardIsMovedOnlyWhenItIsToBeSeen)
{
    showCards(10);
    FakePanel &oldest = panel(u"1"_s);
    ASSERT_FALSE(oldest.isVisible());
    oldest.forgetHistory();

    controller->toggleCollapse();
    settle();
    EXPECT_THAT(oldest.animations(), IsEmpty());
    EXPECT_THAT(oldest.framesSet(), IsEmpty());
    // Where it would stand is not where the column is felt.
    const Rect left = oldest.frame();
    movePointerTo({left.midX(), peekingFrame(3).maxY() + 52});
    EXPECT_FALSE(controller->isDeckRevealed());

    for (int number = 10; number > 4; --number) {
        model(QString::number(number)).onDismiss();
    }
    // It comes from the deepest layer, where the others stand.
    ASSERT_FALSE(oldest.framesSet().empty());
    EXPECT_THAT(oldest.framesSet().front(), RectNear(peekingFrame(3)));
    settle();
    EXPECT_TRUE(oldest.isVisible());
    EXPECT_THAT(columnFrames(), ::testing::ElementsAre(RectNear(peekingFrame(3)), RectNear(peekingFrame(2)),
                                                       RectNear(peekingFrame(1)), RectNear(peekingFrame(0))));
}

TEST_F(ColumnScrollingTest, whatWasSummedUpGoesWithTheColumn)
{
    showCards(1);
    scrollAt(lowest, -50, 0);
    scrollAt(lowest, 0, 17);
    model(u"1"_s).onDismiss();
    settle();
    EXPECT_THAT(monitors.globalMasks(), IsEmpty());

    controller->show(picture(8, 6), {.id = u"2"_s});
    settle();
    scrollAt(lowest, -50, 0);
    scrollAt(lowest, 0, 17);
    EXPECT_EQ(ids(), QStringList(u"2"_s));
    EXPECT_FALSE(controller->isCollapsed());
}

} // namespace
} // namespace lumenfold::test
