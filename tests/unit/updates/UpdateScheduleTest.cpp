#include "platform/updates/UpdateSchedule.h"

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;
using updateSchedule::delayUntilNext;

constexpr std::chrono::sys_seconds now{1'800'000'000s};

TEST(UpdateSchedule, WhoHasNeverLookedLooksSomeMinutesAfterTheStart)
{
    EXPECT_EQ(delayUntilNext(now, std::nullopt, 0), 5min);
    EXPECT_EQ(delayUntilNext(now, std::nullopt, 0.5), 12min + 30s);
    EXPECT_LT(delayUntilNext(now, std::nullopt, 0.999999), 20min);
}

TEST(UpdateSchedule, ThenOnceADayAndALittleLater)
{
    EXPECT_EQ(delayUntilNext(now, now, 0), 24h);
    EXPECT_EQ(delayUntilNext(now, now, 0.5), 25h);
    EXPECT_EQ(delayUntilNext(now, now - 10h, 0), 14h);
}

TEST(UpdateSchedule, OneThatIsOverdueStillWaitsForTheStartToBeOver)
{
    EXPECT_EQ(delayUntilNext(now, now - 24h + 1min, 0), 5min);
    EXPECT_EQ(delayUntilNext(now, now - 24h * 400, 0.2), 8min);
}

TEST(UpdateSchedule, ALookThatIsStillToComeNeverWas)
{
    EXPECT_EQ(delayUntilNext(now, now + 1s, 0), 5min);
    EXPECT_EQ(delayUntilNext(now, now + 24h * 400, 0), 5min);
}

TEST(UpdateSchedule, NeverTwiceWithinADay)
{
    for (double chance = 0; chance < 1; chance += 0.01) {
        for (auto since = 0h; since <= 30h; ++since) {
            EXPECT_GE(since + delayUntilNext(now, now - since, chance), 24h);
        }
    }
}

} // namespace
} // namespace lumenfold::test
