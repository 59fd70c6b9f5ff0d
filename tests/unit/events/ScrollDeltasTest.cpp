#include "platform/events/ScrollDeltas.h"

#include <gtest/gtest.h>

#include <vector>

namespace lumenfold {
namespace {

using Direction = ScrollAxis::Direction;
using Movements = std::vector<AxisMovement>;

const std::vector<ScrollAxis> touchpad{{.number = 2, .direction = Direction::horizontal, .increment = 15},
                                       {.number = 3, .direction = Direction::vertical, .increment = 15}};

TEST(SmoothScroll, aWholeIncrementIsOneNotchAndDownIsNegative)
{
    EXPECT_EQ(smoothScroll(touchpad, Movements{{3, 15}}), (ScrollDelta{.y = -pointsPerNotch}));
    EXPECT_EQ(smoothScroll(touchpad, Movements{{3, -15}}), (ScrollDelta{.y = pointsPerNotch}));
}

TEST(SmoothScroll, rightIsNegative)
{
    EXPECT_EQ(smoothScroll(touchpad, Movements{{2, 15}}), (ScrollDelta{.x = -pointsPerNotch}));
    EXPECT_EQ(smoothScroll(touchpad, Movements{{2, -30}}), (ScrollDelta{.x = 2 * pointsPerNotch}));
}

TEST(SmoothScroll, partsOfNotchesOnBothAxesCount)
{
    EXPECT_EQ(smoothScroll(touchpad, Movements{{2, 1.5}, {3, -3}}), (ScrollDelta{.x = -1, .y = 2}));
}

TEST(SmoothScroll, aNegativeIncrementTurnsTheAxisRound)
{
    const std::vector<ScrollAxis> upsideDown{{.number = 3, .direction = Direction::vertical, .increment = -120}};
    EXPECT_EQ(smoothScroll(upsideDown, Movements{{3, 120}}), (ScrollDelta{.y = pointsPerNotch}));
}

TEST(SmoothScroll, movingThePointerDoesNotScroll)
{
    EXPECT_EQ(smoothScroll(touchpad, Movements{{0, 5}, {1, -7}}), std::nullopt);
    EXPECT_EQ(smoothScroll({}, Movements{{3, 15}}), std::nullopt);
    EXPECT_EQ(smoothScroll(touchpad, Movements{{3, 0}}), std::nullopt);
    const std::vector<ScrollAxis> broken{{.number = 3, .direction = Direction::vertical, .increment = 0}};
    EXPECT_EQ(smoothScroll(broken, Movements{{3, 15}}), std::nullopt);
}

TEST(MovesPointer, scrollAxesDoNot)
{
    EXPECT_TRUE(movesPointer(touchpad, Movements{{0, 1}}));
    EXPECT_TRUE(movesPointer(touchpad, Movements{{1, 1}, {3, 15}}));
    EXPECT_FALSE(movesPointer(touchpad, Movements{{2, 1}, {3, 15}}));
    EXPECT_FALSE(movesPointer(touchpad, Movements{}));
}

TEST(WheelScroll, theFourWheelButtons)
{
    EXPECT_EQ(wheelScroll({}, 4), (ScrollDelta{.y = pointsPerNotch}));
    EXPECT_EQ(wheelScroll({}, 5), (ScrollDelta{.y = -pointsPerNotch}));
    EXPECT_EQ(wheelScroll({}, 6), (ScrollDelta{.x = pointsPerNotch}));
    EXPECT_EQ(wheelScroll({}, 7), (ScrollDelta{.x = -pointsPerNotch}));
    for (const std::uint32_t button : {0U, 1U, 2U, 3U, 8U, 9U}) {
        EXPECT_EQ(wheelScroll({}, button), std::nullopt) << button;
    }
}

TEST(WheelScroll, whatADeviceReportsSmoothlyIsNotCountedAgain)
{
    const std::vector<ScrollAxis> verticalOnly{{.number = 2, .direction = Direction::vertical, .increment = 1}};
    EXPECT_EQ(wheelScroll(verticalOnly, 4), std::nullopt);
    EXPECT_EQ(wheelScroll(verticalOnly, 5), std::nullopt);
    EXPECT_EQ(wheelScroll(verticalOnly, 6), (ScrollDelta{.x = pointsPerNotch}));
    EXPECT_EQ(wheelScroll(touchpad, 6), std::nullopt);
    EXPECT_EQ(wheelScroll(touchpad, 7), std::nullopt);
}

} // namespace
} // namespace lumenfold
