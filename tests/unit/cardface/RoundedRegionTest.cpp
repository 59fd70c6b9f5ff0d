#include "cards/face/RoundedRegion.h"

#include <gtest/gtest.h>

#include <cmath>

namespace lumenfold::test {
namespace {

int pixelsIn(const QRegion &region)
{
    int count = 0;
    for (const QRect &part : region) {
        count += part.width() * part.height();
    }
    return count;
}

TEST(RoundedRegionTest, holdsThePixelsWhoseMiddleIsInTheCircle)
{
    for (const double scale : {1.0, 2.0, 3.0}) {
        const QRegion circle = roundedRegion({10, 20, 24, 24}, 12, scale);
        const QPointF middle(22 * scale, 32 * scale);
        const int side = static_cast<int>(60 * scale);
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                const double distance = std::hypot(x + 0.5 - middle.x(), y + 0.5 - middle.y());
                EXPECT_EQ(circle.contains(QPoint(x, y)), distance <= 12 * scale) << x << ' ' << y << " at " << scale;
            }
        }
    }
}

TEST(RoundedRegionTest, isTheWholeRectangleWithoutARadius)
{
    EXPECT_EQ(roundedRegion({3, 4, 20, 10}, 0, 2), QRegion(6, 8, 40, 20));
    EXPECT_TRUE(roundedRegion({}, 14, 1).isEmpty());
}

TEST(RoundedRegionTest, reachesEveryEdgeAndLosesItsCorners)
{
    const QRegion card = roundedRegion({30, 30, 156, 117}, 14, 2);
    EXPECT_EQ(card.boundingRect(), QRect(60, 60, 312, 234));
    EXPECT_FALSE(card.contains(QPoint(60, 60)));
    EXPECT_FALSE(card.contains(QPoint(371, 293)));
    // What the quarters of a circle leave of the square around them.
    constexpr double radius = 28;
    EXPECT_NEAR(pixelsIn(card), 312 * 234 - (4 - M_PI) * radius * radius, radius);
}

TEST(RoundedRegionTest, isNoRounderThanItCanBe)
{
    EXPECT_EQ(roundedRegion({0, 0, 44, 24}, 100, 1), roundedRegion({0, 0, 44, 24}, 12, 1));
}

} // namespace
} // namespace lumenfold::test
