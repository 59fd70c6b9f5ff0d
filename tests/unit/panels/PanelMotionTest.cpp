#include "platform/panels/PanelMotion.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumenfold {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

constexpr Rect here{0, 0, 100, 50};
constexpr Rect there{200, 100, 100, 50};
constexpr Rect elsewhere{-40, 10, 300, 20};

class PanelMotionTest : public ::testing::Test {
protected:
    /// Brings the motion to `time` after the start and runs what is completed.
    void advanceTo(std::chrono::milliseconds time)
    {
        PanelMotion::Completions completed;
        m_motion.advance(at(time), completed);
        for (const auto &onCompleted : completed) {
            onCompleted();
        }
    }
    [[nodiscard]] PanelMotion::TimePoint at(std::chrono::milliseconds time) const { return m_start + time; }
    [[nodiscard]] std::function<void()> note(int number)
    {
        return [this, number] { m_completed.push_back(number); };
    }

    PanelMotion::TimePoint m_start{1000h};
    PanelMotion m_motion{here};
    std::vector<int> m_completed;
};

TEST_F(PanelMotionTest, restsAtFirst)
{
    EXPECT_FALSE(m_motion.isMoving());
    EXPECT_EQ(m_motion.frame(), here);
    EXPECT_EQ(m_motion.alpha(), 1);
    EXPECT_EQ(m_motion.destinationOfMove(), std::nullopt);
}

TEST_F(PanelMotionTest, movesFromWhereItIsToExactlyTheEnd)
{
    m_motion.animate({.frame = there, .duration = 200ms, .onCompleted = note(1)}, at(0ms));
    EXPECT_EQ(m_motion.frame(), here);
    advanceTo(100ms);
    EXPECT_NEAR(m_motion.frame().x, 100, 0.001);
    EXPECT_NEAR(m_motion.frame().y, 50, 0.001);
    EXPECT_TRUE(m_motion.isMoving());
    EXPECT_THAT(m_completed, ElementsAre());
    advanceTo(200ms);
    EXPECT_EQ(m_motion.frame(), there);
    EXPECT_FALSE(m_motion.isMoving());
    EXPECT_THAT(m_completed, ElementsAre(1));
    advanceTo(300ms);
    EXPECT_THAT(m_completed, ElementsAre(1));
}

TEST_F(PanelMotionTest, frameAndAlphaMoveIndependently)
{
    m_motion.setAlpha(0);
    m_motion.animate({.frame = there, .duration = 200ms, .onCompleted = note(1)}, at(0ms));
    m_motion.animate({.alpha = 1, .duration = 180ms, .onCompleted = note(2)}, at(10ms));
    advanceTo(190ms);
    EXPECT_EQ(m_motion.alpha(), 1);
    EXPECT_NE(m_motion.frame(), there);
    advanceTo(200ms);
    EXPECT_EQ(m_motion.frame(), there);
    EXPECT_THAT(m_completed, ElementsAre(2, 1));
}

TEST_F(PanelMotionTest, aLaterAnimationTakesOverFromWhereTheValueIs)
{
    m_motion.animate({.frame = there, .duration = 200ms, .onCompleted = note(1)}, at(0ms));
    advanceTo(100ms);
    const Rect halfWay = m_motion.frame();
    m_motion.animate({.frame = elsewhere, .duration = 100ms, .onCompleted = note(2)}, at(100ms));
    advanceTo(100ms);
    EXPECT_EQ(m_motion.frame(), halfWay);
    advanceTo(500ms);
    EXPECT_EQ(m_motion.frame(), elsewhere);
    EXPECT_THAT(m_completed, ElementsAre(2));
}

TEST_F(PanelMotionTest, aDirectSettingEndsTheAnimationOfThatValueOnly)
{
    m_motion.animate({.frame = there, .duration = 200ms, .onCompleted = note(1)}, at(0ms));
    m_motion.animate({.alpha = 0, .duration = 200ms, .onCompleted = note(2)}, at(0ms));
    advanceTo(50ms);
    m_motion.setFrame(elsewhere);
    advanceTo(60ms);
    EXPECT_EQ(m_motion.frame(), elsewhere);
    EXPECT_TRUE(m_motion.isMoving());
    advanceTo(200ms);
    EXPECT_EQ(m_motion.alpha(), 0);
    EXPECT_THAT(m_completed, ElementsAre(2));
}

TEST_F(PanelMotionTest, aGroupCompletesOnceAllOfItsValuesHaveArrived)
{
    m_motion.animate({.frame = there, .alpha = 0, .duration = 100ms, .onCompleted = note(1)}, at(0ms));
    advanceTo(99ms);
    EXPECT_THAT(m_completed, ElementsAre());
    advanceTo(100ms);
    EXPECT_THAT(m_completed, ElementsAre(1));
}

TEST_F(PanelMotionTest, aGroupThatLostAValueNeverCompletesButMovesTheOther)
{
    m_motion.animate({.frame = there, .alpha = 0, .duration = 100ms, .onCompleted = note(1)}, at(0ms));
    m_motion.setAlpha(0.5);
    advanceTo(100ms);
    EXPECT_EQ(m_motion.frame(), there);
    EXPECT_EQ(m_motion.alpha(), 0.5);
    EXPECT_FALSE(m_motion.isMoving());
    EXPECT_THAT(m_completed, ElementsAre());
}

TEST_F(PanelMotionTest, withoutDurationItArrivesWithTheNextAdvance)
{
    m_motion.animate({.frame = there, .onCompleted = note(1)}, at(0ms));
    advanceTo(0ms);
    EXPECT_EQ(m_motion.frame(), there);
    EXPECT_THAT(m_completed, ElementsAre(1));
}

TEST_F(PanelMotionTest, aGroupWithoutValuesOnlyTakesItsTime)
{
    m_motion.animate({.duration = 100ms, .onCompleted = note(1)}, at(0ms));
    EXPECT_TRUE(m_motion.isMoving());
    advanceTo(99ms);
    EXPECT_THAT(m_completed, ElementsAre());
    advanceTo(100ms);
    EXPECT_THAT(m_completed, ElementsAre(1));
    EXPECT_FALSE(m_motion.isMoving());
    EXPECT_EQ(m_motion.frame(), here);
}

TEST_F(PanelMotionTest, tellsItsDestinationWhileItMovesWithoutResizing)
{
    m_motion.animate({.frame = there, .duration = 100ms}, at(0ms));
    EXPECT_EQ(m_motion.destinationOfMove(), there);
    advanceTo(100ms);
    EXPECT_EQ(m_motion.destinationOfMove(), std::nullopt);
    m_motion.animate({.frame = elsewhere, .duration = 100ms}, at(100ms));
    EXPECT_EQ(m_motion.destinationOfMove(), std::nullopt);
}

TEST_F(PanelMotionTest, completionsComeInTheOrderOfTheGroups)
{
    m_motion.animate({.alpha = 0, .duration = 100ms, .onCompleted = note(1)}, at(0ms));
    m_motion.animate({.frame = there, .duration = 100ms, .onCompleted = note(2)}, at(10ms));
    advanceTo(500ms);
    EXPECT_THAT(m_completed, ElementsAre(1, 2));
}

} // namespace
} // namespace lumenfold
