#include "platform/screencapture/OwnWindowTraces.h"

#include <gtest/gtest.h>

namespace lumenfold {
namespace {

using namespace std::chrono_literals;

constexpr xcb_window_t card = 7;
constexpr xcb_window_t pill = 8;
constexpr QRect low(0, 500, 100, 80);
constexpr QRect high(0, 100, 100, 80);

class OwnWindowTracesTest : public ::testing::Test {
protected:
    [[nodiscard]] QRegion region(int margin = 0) const { return traces.suspectRegion(now, margin); }

    OwnWindowTraces traces;
    OwnWindowTraces::Clock::time_point now{1h};
};

TEST_F(OwnWindowTracesTest, IsEmptyWithoutWindows)
{
    EXPECT_TRUE(region().isEmpty());
    EXPECT_TRUE(region(50).isEmpty());
}

TEST_F(OwnWindowTracesTest, HoldsWindowsThatStand)
{
    traces.appeared(card, low);
    traces.appeared(pill, high);
    now += 1h;
    EXPECT_EQ(region(), QRegion(low) + QRegion(high));
    EXPECT_EQ(traces.standingRegion(), region());
    EXPECT_EQ(region(10), QRegion(low.adjusted(-10, -10, 10, 10)) + QRegion(high.adjusted(-10, -10, 10, 10)));
}

TEST_F(OwnWindowTracesTest, HoldsAWindowForASecondAfterItLeft)
{
    traces.appeared(card, low);
    traces.left(card, now);
    EXPECT_TRUE(traces.standingRegion().isEmpty());
    now += 999ms;
    EXPECT_EQ(region(), QRegion(low));
    now += 1ms;
    EXPECT_TRUE(region().isEmpty());
}

TEST_F(OwnWindowTracesTest, HoldsThePlaceThatAWindowMovedAwayFrom)
{
    traces.appeared(card, low);
    traces.moved(card, high, now);
    EXPECT_EQ(region(), QRegion(low) + QRegion(high));
    now += 1s;
    EXPECT_EQ(region(), QRegion(high));
}

TEST_F(OwnWindowTracesTest, HoldsNoOldPlaceThatTheWindowStillCovers)
{
    traces.appeared(card, low);
    traces.moved(card, low.adjusted(0, 0, 50, 50), now);
    traces.left(card, now);
    traces.leftWithoutTrace(card);
    EXPECT_TRUE(region().isEmpty());
}

TEST_F(OwnWindowTracesTest, ForgetsAWindowThatSaysSoBeforeItLeaves)
{
    traces.appeared(card, low);
    traces.moved(card, high, now);
    traces.leftWithoutTrace(card);
    EXPECT_EQ(region(), QRegion(high)) << "it is still there";
    traces.left(card, now);
    EXPECT_TRUE(region().isEmpty());
}

TEST_F(OwnWindowTracesTest, ForgetsAWindowThatSaysSoAfterItLeft)
{
    traces.appeared(card, low);
    traces.appeared(pill, high);
    traces.left(card, now);
    traces.left(pill, now);
    traces.leftWithoutTrace(card);
    EXPECT_EQ(region(), QRegion(high));
}

TEST_F(OwnWindowTracesTest, BelievesAWindowOncePerDeparture)
{
    traces.appeared(card, low);
    traces.leftWithoutTrace(card);
    traces.left(card, now);
    traces.appeared(card, low);
    traces.left(card, now);
    EXPECT_EQ(region(), QRegion(low));
}

TEST_F(OwnWindowTracesTest, IgnoresWindowsThatNeverAppeared)
{
    traces.moved(card, low, now);
    traces.left(card, now);
    traces.leftWithoutTrace(card);
    EXPECT_TRUE(region().isEmpty());
    traces.appeared(card, low);
    traces.left(card, now);
    EXPECT_EQ(region(), QRegion(low));
}

} // namespace
} // namespace lumenfold
