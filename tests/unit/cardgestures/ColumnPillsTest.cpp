/// The controls beside the column: where they stand and when they are seen.
#include "tests/unit/cards/CardsFixture.h"

namespace lumenfold::test {
namespace {

using namespace Qt::StringLiterals;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr Point inTheColumn{200, 130};
constexpr Point elsewhere{900, 500};

class ColumnPillsTest : public CardsTest {
protected:
    ColumnPillsTest() { views.offersPills = true; }

    [[nodiscard]] FakePanel *pillTitled(const QString &title) const
    {
        for (FakePanel *each : panels.panels()) {
            if (each->options().title == title) {
                return each;
            }
        }
        return nullptr;
    }
    [[nodiscard]] FakePanel &collapsePill() const { return *pillTitled(u"Collapse or expand screenshots"_s); }
    [[nodiscard]] FakePanel &clearPill() const { return *pillTitled(u"Clear screenshots"_s); }
};

TEST_F(ColumnPillsTest, theyAreMadeWithTheFirstCardAndNotSeen)
{
    EXPECT_THAT(panels.panels(), IsEmpty());
    showCards(2);
    ASSERT_THAT(panels.panels(), SizeIs(4));
    EXPECT_FALSE(collapsePill().isVisible());
    EXPECT_FALSE(clearPill().isVisible());
    EXPECT_EQ(collapsePill().options().transparentMargin, 12);
    EXPECT_EQ(collapsePill().options().keyPolicy, PanelKeyPolicy::never);
}

TEST_F(ColumnPillsTest, thePointerOverTheColumnShowsThemAboveTheCards)
{
    showCards(2);

    movePointerTo(inTheColumn);
    ASSERT_THAT(panels.stacking(), SizeIs(4));
    EXPECT_EQ(panels.stacking().at(2), &collapsePill());
    EXPECT_EQ(panels.stacking().at(3), &clearPill());
    // Centred on the lower edge of the column, which stands at (124, 74).
    EXPECT_THAT(collapsePill().frame(), RectNear(Rect{204 - 34, 74 - 24, 68, 48}));
    // Ten points above it, 13 to the middle: the column ends at 326.
    EXPECT_THAT(clearPill().frame(), RectNear(Rect{204 - 78, 349 - 25, 156, 50}));

    movePointerTo(elsewhere);
    EXPECT_FALSE(collapsePill().isVisible());
    EXPECT_FALSE(clearPill().isVisible());
}

TEST_F(ColumnPillsTest, aSingleCardCannotBeCleared)
{
    showCards(1);
    movePointerTo(inTheColumn);
    EXPECT_TRUE(collapsePill().isVisible());
    EXPECT_FALSE(clearPill().isVisible());

    controller->show(picture(8, 6), {.id = u"2"_s});
    EXPECT_TRUE(clearPill().isVisible());
    model(u"2"_s).onDismiss();
    EXPECT_FALSE(clearPill().isVisible());
    EXPECT_TRUE(collapsePill().isVisible());
}

TEST_F(ColumnPillsTest, aCollapsedColumnHasOneOnItsFrontCard)
{
    showCards(3);
    movePointerTo(inTheColumn);

    controller->controlState().onToggle();
    EXPECT_TRUE(controller->isCollapsed());
    EXPECT_FALSE(clearPill().isVisible());
    EXPECT_TRUE(collapsePill().isVisible());
    // The front card's upper edge is 28 points above the visible frame's lower one.
    EXPECT_THAT(collapsePill().frame(), RectNear(Rect{204 - 34, 78 - 24, 68, 48}));
    settle();
    EXPECT_EQ(panels.stacking().back(), &collapsePill());

    controller->controlState().onToggle();
    EXPECT_FALSE(controller->isCollapsed());
    EXPECT_TRUE(clearPill().isVisible());
}

TEST_F(ColumnPillsTest, aNewCardStandsBeneathThem)
{
    showCards(2);
    movePointerTo(inTheColumn);

    controller->show(picture(8, 6), {.id = u"3"_s});
    ASSERT_THAT(panels.stacking(), SizeIs(5));
    EXPECT_EQ(panels.stacking().at(4), &clearPill());
    EXPECT_THAT(clearPill().frame(), RectNear(Rect{204 - 78, 349 + 132 - 25, 156, 50}));
}

TEST_F(ColumnPillsTest, thePointerOnAPillIsStillOverTheColumn)
{
    showCards(2);
    movePointerTo(inTheColumn);
    const double top = clearPill().frame().maxY();
    ASSERT_GT(top, 356 + 10);

    // Higher than 50 points above the panels, which end at 356, but at the pill.
    movePointerTo({204, top + 14});
    EXPECT_TRUE(clearPill().isVisible());
    EXPECT_LT(top + 14, 356 + 50);
    movePointerTo({204, 356 + 51});
    EXPECT_FALSE(clearPill().isVisible());
}

TEST_F(ColumnPillsTest, aPillFarFromTheColumnIsReached)
{
    // A deck that peeks ends lower than the pill above it reaches, 50 points and more.
    showCards(2);
    movePointerTo(inTheColumn);
    settle();
    controller->toggleCollapse();
    settle();
    // The Clear All pill stays where it was, unseen, and counts.
    const Rect unseen = clearPill().frame();
    ASSERT_FALSE(clearPill().isVisible());
    movePointerTo({204, unseen.maxY() + 13});
    EXPECT_TRUE(collapsePill().isVisible());
    movePointerTo({204, unseen.maxY() + 15});
    EXPECT_FALSE(collapsePill().isVisible());
}

TEST_F(ColumnPillsTest, noneIsSeenWhileACaptureIsTaken)
{
    showCards(2);
    movePointerTo(inTheColumn);
    controller->setHiddenForCapture(true);
    EXPECT_THAT(panels.stacking(), IsEmpty());

    movePointerTo(elsewhere);
    movePointerTo(inTheColumn);
    controller->controlState().onToggle();
    settle();
    EXPECT_THAT(panels.stacking(), IsEmpty());
    controller->controlState().onToggle();

    controller->setHiddenForCapture(false);
    EXPECT_TRUE(collapsePill().isVisible());
    EXPECT_TRUE(clearPill().isVisible());
    EXPECT_EQ(panels.stacking().back(), &clearPill());
}

TEST_F(ColumnPillsTest, theyGoWithTheLastCard)
{
    showCards(2);
    movePointerTo(inTheColumn);

    controller->controlState().pressClear();
    EXPECT_FALSE(collapsePill().isVisible());
    EXPECT_FALSE(clearPill().isVisible());

    controller->restoreLastDismissed();
    EXPECT_FALSE(collapsePill().isVisible());
    movePointerTo(inTheColumn);
    EXPECT_TRUE(collapsePill().isVisible());
    EXPECT_TRUE(clearPill().isVisible());
}

TEST_F(ColumnPillsTest, theyFollowTheScreens)
{
    showCards(2);
    movePointerTo(inTheColumn);
    const Rect before = collapsePill().frame();

    Screen moved = screenOfFourCards();
    moved.visibleFrame = {200, 50, 900, 564};
    screens.setScreens({moved});
    EXPECT_THAT(collapsePill().frame(), RectNear(before.offsetBy(100, 0)));
}

TEST_F(ColumnPillsTest, aStateWhoseControllerIsGoneDoesNothing)
{
    showCards(2);
    const auto onToggle = controller->controlState().onToggle;
    const auto onClearAll = controller->controlState().onClearAll;
    controller.reset();
    onToggle();
    onClearAll();
}

} // namespace
} // namespace lumenfold::test
