#include "platform/events/ServerClock.h"

#include <gtest/gtest.h>

namespace lumenfold {
namespace {

TEST(ServerClock, countsSeconds)
{
    ServerClock clock;
    EXPECT_DOUBLE_EQ(clock.seconds(1500), 1.5);
    EXPECT_DOUBLE_EQ(clock.seconds(1850), 1.85);
}

TEST(ServerClock, goesOnWhereTheServerStartsAgain)
{
    ServerClock clock;
    const double before = clock.seconds(0xFFFFFF00);
    EXPECT_NEAR(clock.seconds(0x100) - before, 0.512, 1e-6);
}

TEST(ServerClock, neverGoesBack)
{
    ServerClock clock;
    const double before = clock.seconds(5000);
    EXPECT_DOUBLE_EQ(clock.seconds(4990), before);
    EXPECT_DOUBLE_EQ(clock.seconds(5010), before + 0.01);
}

} // namespace
} // namespace lumenfold
