#include "platform/panels/RootStacking.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace lumenfold {
namespace {

using ::testing::ElementsAre;
using Redirect = RootStacking::Redirect;
using MapState = RootStacking::MapState;
using Windows = std::vector<std::uint32_t>;

constexpr std::uint32_t lower = 1;
constexpr std::uint32_t panel = 50;
constexpr std::uint32_t otherPanel = 51;
constexpr std::uint32_t upper = 2;

class RootStackingTest : public ::testing::Test {
protected:
    RootStackingTest()
    {
        m_stacking.reset({{lower, Redirect::managed, MapState::mapped},
                          {panel, Redirect::overridden, MapState::mapped},
                          {otherPanel, Redirect::overridden, MapState::mapped}});
    }

    [[nodiscard]] std::optional<std::uint32_t> cover() const
    {
        return m_stacking.topmostOrdinaryAbove(Windows{panel, otherPanel});
    }

    std::set<std::uint32_t> m_frames;
    int m_questions = 0;
    RootStacking m_stacking{[this](std::uint32_t window) {
        ++m_questions;
        return m_frames.contains(window);
    }};
};

TEST_F(RootStackingTest, nothingIsAboveAtFirst)
{
    EXPECT_EQ(cover(), std::nullopt);
}

TEST_F(RootStackingTest, aNewWindowCoversOnceItIsShown)
{
    m_stacking.created(upper, Redirect::managed);
    EXPECT_EQ(cover(), std::nullopt);
    m_stacking.mapped(upper, Redirect::managed);
    EXPECT_EQ(cover(), upper);
    m_stacking.unmapped(upper);
    EXPECT_EQ(cover(), std::nullopt);
}

TEST_F(RootStackingTest, aRaisedWindowCoversWhatIsBelowIt)
{
    m_stacking.placedAbove(lower, panel, Redirect::managed);
    EXPECT_THAT(m_stacking.bottomToTop(), ElementsAre(panel, lower, otherPanel));
    EXPECT_EQ(cover(), lower);
    EXPECT_THAT(m_stacking.standingBelow(Windows{panel, otherPanel}, lower), ElementsAre(panel));
    m_stacking.placedAbove(panel, lower, Redirect::overridden);
    EXPECT_EQ(cover(), std::nullopt);
}

TEST_F(RootStackingTest, theTopmostOfSeveralIsNamed)
{
    m_stacking.placedAbove(lower, panel, Redirect::managed);
    m_stacking.created(upper, Redirect::managed);
    m_stacking.mapped(upper, Redirect::managed);
    EXPECT_EQ(cover(), upper);
    EXPECT_THAT(m_stacking.standingBelow(Windows{panel, otherPanel}, upper), ElementsAre(panel, otherPanel));
}

TEST_F(RootStackingTest, menusStayInFront)
{
    m_stacking.created(upper, Redirect::overridden);
    m_stacking.mapped(upper, Redirect::overridden);
    EXPECT_EQ(cover(), std::nullopt);
}

TEST_F(RootStackingTest, framesOfAWindowManagerAreOrdinaryAndAskedForOnce)
{
    m_frames.insert(upper);
    m_stacking.created(upper, Redirect::overridden);
    m_stacking.mapped(upper, Redirect::overridden);
    EXPECT_EQ(cover(), upper);
    EXPECT_EQ(cover(), upper);
    EXPECT_EQ(m_questions, 1);
}

TEST_F(RootStackingTest, aWindowIntoWhichAnotherIsPutIsAFrame)
{
    constexpr std::uint32_t client = 7;
    m_stacking.created(upper, Redirect::overridden);
    m_stacking.mapped(upper, Redirect::overridden);
    m_stacking.created(client, Redirect::managed);
    EXPECT_EQ(cover(), std::nullopt);
    m_stacking.reparentedInto(client, upper);
    EXPECT_EQ(cover(), upper);
    EXPECT_THAT(m_stacking.bottomToTop(), ElementsAre(lower, panel, otherPanel, upper));
}

TEST_F(RootStackingTest, nobodyIsAskedAboutWindowsBelowThePanels)
{
    m_stacking.reset({{upper, Redirect::overridden, MapState::mapped},
                      {panel, Redirect::overridden, MapState::mapped},
                      {otherPanel, Redirect::overridden, MapState::mapped}});
    EXPECT_EQ(cover(), std::nullopt);
    EXPECT_EQ(m_questions, 0);
}

TEST_F(RootStackingTest, toleratedWindowsStayInFront)
{
    m_stacking.created(upper, Redirect::managed);
    m_stacking.mapped(upper, Redirect::managed);
    m_stacking.tolerate(upper);
    EXPECT_EQ(cover(), std::nullopt);
    m_stacking.tolerateNone();
    EXPECT_EQ(cover(), upper);
}

TEST_F(RootStackingTest, circulatedToTopAndBottom)
{
    m_stacking.raisedToTop(lower);
    EXPECT_THAT(m_stacking.bottomToTop(), ElementsAre(panel, otherPanel, lower));
    m_stacking.loweredToBottom(otherPanel);
    EXPECT_THAT(m_stacking.bottomToTop(), ElementsAre(otherPanel, panel, lower));
    m_stacking.placedAbove(lower, 0, Redirect::managed);
    EXPECT_THAT(m_stacking.bottomToTop(), ElementsAre(lower, otherPanel, panel));
}

TEST_F(RootStackingTest, unknownWindowsChangeNothing)
{
    m_stacking.destroyed(99);
    m_stacking.mapped(99, Redirect::managed);
    m_stacking.unmapped(99);
    m_stacking.placedAbove(99, lower, Redirect::managed);
    m_stacking.placedAbove(lower, 99, Redirect::managed);
    m_stacking.raisedToTop(99);
    m_stacking.created(lower, Redirect::managed);
    EXPECT_THAT(m_stacking.bottomToTop(), ElementsAre(lower, panel, otherPanel));
    EXPECT_EQ(m_stacking.topmostOrdinaryAbove(Windows{98}), std::nullopt);
    EXPECT_EQ(m_stacking.topmostOrdinaryAbove({}), std::nullopt);
}

} // namespace
} // namespace lumenfold
