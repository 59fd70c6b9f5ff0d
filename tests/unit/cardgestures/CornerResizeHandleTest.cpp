#include "cards/CornerResizeHandle.h"

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

using Corner = CornerResizeHandle::Corner;

/// Whether the line passes that place.
bool passes(const QPainterPath &path, QPointF place)
{
    for (int step = 0; step <= 2000; ++step) {
        const QPointF way = path.pointAtPercent(step / 2000.0) - place;
        if (std::hypot(way.x(), way.y()) < 0.05) {
            return true;
        }
    }
    return false;
}

TEST(CornerResizeHandle, hugsTheUpperLeftCorner)
{
    const QPainterPath path = CornerResizeHandle{.corner = Corner::topLeft, .cornerRadius = 6}.path({10, 20, 9, 9});
    EXPECT_EQ(path.elementAt(0), QPainterPath::Element({10, 29, QPainterPath::MoveToElement}));
    EXPECT_EQ(path.currentPosition(), QPointF(19, 20));
    EXPECT_TRUE(passes(path, {10, 26}));
    EXPECT_TRUE(passes(path, {16, 20}));
    // The middle of the bend: the radius away from its centre (16, 26).
    EXPECT_TRUE(passes(path, {16 - 6 * std::sqrt(0.5), 26 - 6 * std::sqrt(0.5)}));
    EXPECT_FALSE(passes(path, {10, 20}));
    EXPECT_FALSE(passes(path, {19, 29}));
}

TEST(CornerResizeHandle, hugsTheLowerRightCorner)
{
    const QPainterPath path = CornerResizeHandle{.corner = Corner::bottomRight, .cornerRadius = 6}.path({10, 20, 9, 9});
    EXPECT_EQ(path.elementAt(0), QPainterPath::Element({19, 20, QPainterPath::MoveToElement}));
    EXPECT_EQ(path.currentPosition(), QPointF(10, 29));
    EXPECT_TRUE(passes(path, {19, 23}));
    EXPECT_TRUE(passes(path, {13, 29}));
    EXPECT_TRUE(passes(path, {13 + 6 * std::sqrt(0.5), 23 + 6 * std::sqrt(0.5)}));
    EXPECT_FALSE(passes(path, {19, 29}));
}

TEST(CornerResizeHandle, bendsByTenPointsIfNothingElseIsSaid)
{
    EXPECT_EQ(CornerResizeHandle{}.cornerRadius, 10);
    EXPECT_TRUE(passes(CornerResizeHandle{}.path({0, 0, 20, 20}), {10, 0}));
}

} // namespace
} // namespace lumenfold::test
