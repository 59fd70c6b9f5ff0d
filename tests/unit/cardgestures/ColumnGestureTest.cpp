#include "cards/ColumnGesture.h"

#include <gtest/gtest.h>

#include <limits>

namespace lumenfold::test {
namespace {

using Action = ColumnGesture::Action;
using Phase = GesturePhase;

class ColumnGestureTest : public ::testing::Test {
protected:
    /// A trackpad's event in the middle of a gesture, unless another phase is named.
    Action scroll(double x, double y, Phase phase = Phase::changed, Phase momentum = Phase::none)
    {
        PointerEvent event{.type = PointerEventType::scrollWheel, .scrollingDeltaX = x, .scrollingDeltaY = y};
        event.phase = phase;
        event.momentumPhase = momentum;
        event.timestamp = m_time;
        return m_gesture.scrolled(event, {.isCollapsed = m_isCollapsed, .cardUnderPointer = [this] { return m_card; }});
    }
    Action wheel(double x, double y) { return scroll(x, y, Phase::none); }

    ColumnGesture m_gesture;
    double m_time = 100;
    bool m_isCollapsed = false;
    const ColumnGesture::Card m_first = std::make_shared<int>(1);
    const ColumnGesture::Card m_second = std::make_shared<int>(2);
    ColumnGesture::Card m_card = m_first;
};

TEST_F(ColumnGestureTest, twoSwipesOfThirtyOnOneCardThrowItAway)
{
    EXPECT_EQ(scroll(-30, 0), Action::none);
    EXPECT_EQ(scroll(-30, 0), Action::throwAway);
}

TEST_F(ColumnGestureTest, theSameWaySpreadOverTwoCardsThrowsNoneAway)
{
    EXPECT_EQ(scroll(-30, 0), Action::none);
    m_card = m_second;
    EXPECT_EQ(scroll(-30, 0), Action::none);
    m_card = m_first;
    EXPECT_EQ(scroll(-30, 0), Action::none);
}

TEST_F(ColumnGestureTest, fiftyFivePointsAreEnoughAndNothingLessIs)
{
    EXPECT_EQ(scroll(-54.9, 0), Action::none);
    EXPECT_EQ(scroll(-0.1, 0), Action::throwAway);
}

TEST_F(ColumnGestureTest, theWayToTheRightMustBeGoneBackFirst)
{
    EXPECT_EQ(scroll(200, 0), Action::none);
    EXPECT_EQ(scroll(-200, 0), Action::none);
    EXPECT_EQ(scroll(-54, 0), Action::none);
    EXPECT_EQ(scroll(-1, 0), Action::throwAway);
}

TEST_F(ColumnGestureTest, betweenTheCardsTheWayCountsForNone)
{
    EXPECT_EQ(scroll(-50, 0), Action::none);
    m_card = nullptr;
    EXPECT_EQ(scroll(-50, 0), Action::none);
    m_card = m_first;
    EXPECT_EQ(scroll(-50, 0), Action::none);
    EXPECT_EQ(scroll(-5, 0), Action::throwAway);
}

TEST_F(ColumnGestureTest, aCardThatIsGoneLeavesNothingToTheNextOne)
{
    auto passing = std::make_shared<int>(3);
    m_card = passing;
    EXPECT_EQ(scroll(-50, 0), Action::none);
    passing.reset();
    m_card = nullptr;
    m_card = m_first;
    EXPECT_EQ(scroll(-50, 0), Action::none);
}

TEST_F(ColumnGestureTest, theRestOfASwipeAndItsMomentumSpareTheNextCard)
{
    EXPECT_EQ(scroll(-60, 0), Action::throwAway);
    m_card = m_second;
    EXPECT_EQ(scroll(-60, 0), Action::none);
    EXPECT_EQ(scroll(0, 0, Phase::ended), Action::none);
    EXPECT_EQ(scroll(-60, 0, Phase::none, Phase::began), Action::none);
    m_time += 10;
    EXPECT_EQ(scroll(-60, 0, Phase::none, Phase::changed), Action::none);
    EXPECT_EQ(scroll(-60, 0, Phase::began), Action::throwAway);
}

TEST_F(ColumnGestureTest, aFingerLaidDownBeginsANewSwipe)
{
    EXPECT_EQ(scroll(-60, 0), Action::throwAway);
    EXPECT_EQ(scroll(0, 0, Phase::mayBegin), Action::none);
    EXPECT_EQ(scroll(-60, 0), Action::throwAway);
}

TEST_F(ColumnGestureTest, theEndOfAGestureForgetsItsWay)
{
    for (const Phase end : {Phase::ended, Phase::cancelled}) {
        EXPECT_EQ(scroll(-50, 0), Action::none);
        EXPECT_EQ(scroll(0, 17), Action::none);
        // What the last event itself brings does not count.
        EXPECT_EQ(scroll(-100, 0, end), Action::none);
        EXPECT_EQ(scroll(-50, 0), Action::none);
        EXPECT_EQ(scroll(0, 17), Action::none);
        EXPECT_EQ(scroll(0, 0, end), Action::none);
    }
}

TEST_F(ColumnGestureTest, aWheelsLockEndsAfterAPause)
{
    EXPECT_EQ(wheel(-60, 0), Action::throwAway);
    m_time += 0.35;
    EXPECT_EQ(wheel(-60, 0), Action::none);
    // From the last event on, not from the swipe.
    m_time += 0.35;
    EXPECT_EQ(wheel(-60, 0), Action::none);
    m_time += 0.36;
    EXPECT_EQ(wheel(-60, 0), Action::throwAway);
}

TEST_F(ColumnGestureTest, aTrackpadsLockDoesNotEndByWaiting)
{
    EXPECT_EQ(scroll(-60, 0), Action::throwAway);
    m_time += 10;
    EXPECT_EQ(scroll(-60, 0), Action::none);
}

TEST_F(ColumnGestureTest, twoTimesTenUpwardsCollapse)
{
    EXPECT_EQ(scroll(0, 10), Action::none);
    EXPECT_EQ(scroll(0, 10), Action::collapse);
    // It begins anew.
    EXPECT_EQ(scroll(0, 10), Action::none);
}

TEST_F(ColumnGestureTest, eighteenDownwardsExpand)
{
    m_isCollapsed = true;
    EXPECT_EQ(scroll(0, -17.9), Action::none);
    EXPECT_EQ(scroll(0, -0.1), Action::expand);
    m_isCollapsed = false;
    EXPECT_EQ(scroll(0, -18), Action::none);
}

TEST_F(ColumnGestureTest, whatIsCollapsedDoesNotCollapseAgain)
{
    m_isCollapsed = true;
    EXPECT_EQ(scroll(0, 40), Action::none);
    // Nothing of it is left to be gone back.
    EXPECT_EQ(scroll(0, -18), Action::expand);
}

TEST_F(ColumnGestureTest, aDiagonalEventCountsAsVertical)
{
    EXPECT_EQ(scroll(-60, -60), Action::none);
    EXPECT_EQ(scroll(-30, 0), Action::none);
    EXPECT_EQ(scroll(-18, 18), Action::collapse);
    EXPECT_EQ(scroll(18, 18), Action::collapse);
}

TEST_F(ColumnGestureTest, aCollapsedColumnsCardsAreNotThrownAway)
{
    m_isCollapsed = true;
    EXPECT_EQ(scroll(-200, 0), Action::none);
    m_isCollapsed = false;
    EXPECT_EQ(scroll(-54, 0), Action::none);
}

TEST_F(ColumnGestureTest, whatIsForgottenDoesNotCount)
{
    EXPECT_EQ(scroll(-54, 0), Action::none);
    EXPECT_EQ(scroll(0, 17), Action::none);
    m_gesture.forget();
    EXPECT_EQ(scroll(-54, 0), Action::none);
    EXPECT_EQ(scroll(0, 17), Action::none);
}

TEST_F(ColumnGestureTest, numbersThatAreNoneChangeNothing)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(scroll(nan, 0), Action::none);
    EXPECT_EQ(scroll(0, nan), Action::none);
    EXPECT_EQ(scroll(-infinity, 0), Action::none);
    EXPECT_EQ(scroll(0, 18), Action::collapse);
    EXPECT_EQ(scroll(-55, 0), Action::throwAway);
}

} // namespace
} // namespace lumenfold::test
