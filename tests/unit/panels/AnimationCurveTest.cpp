#include "platform/panels/AnimationCurve.h"

#include <gtest/gtest.h>

namespace lumenfold {
namespace {

TEST(AnimationCurve, beginsAndEndsWhereItShould)
{
    for (const AnimationCurve curve : {AnimationCurve::standard, AnimationCurve::easeIn}) {
        EXPECT_DOUBLE_EQ(progressAt(0, curve), 0);
        EXPECT_DOUBLE_EQ(progressAt(1, curve), 1);
        EXPECT_DOUBLE_EQ(progressAt(-0.5, curve), 0);
        EXPECT_DOUBLE_EQ(progressAt(7, curve), 1);
    }
}

TEST(AnimationCurve, neverGoesBack)
{
    for (const AnimationCurve curve : {AnimationCurve::standard, AnimationCurve::easeIn}) {
        double previous = 0;
        for (int step = 1; step <= 100; ++step) {
            const double now = progressAt(step / 100.0, curve);
            EXPECT_GT(now, previous) << "step " << step;
            previous = now;
        }
    }
}

TEST(AnimationCurve, standardIsSymmetricAndEasesAtBothEnds)
{
    EXPECT_NEAR(progressAt(0.5, AnimationCurve::standard), 0.5, 1e-6);
    EXPECT_NEAR(progressAt(0.2, AnimationCurve::standard), 1 - progressAt(0.8, AnimationCurve::standard), 1e-6);
    EXPECT_LT(progressAt(0.1, AnimationCurve::standard), 0.05);
    EXPECT_GT(progressAt(0.9, AnimationCurve::standard), 0.95);
}

TEST(AnimationCurve, easeInIsFastestAtTheEnd)
{
    EXPECT_LT(progressAt(0.1, AnimationCurve::easeIn), 0.05);
    EXPECT_LT(progressAt(0.5, AnimationCurve::easeIn), 0.35);
    EXPECT_LT(progressAt(0.9, AnimationCurve::easeIn), 0.9);
}

} // namespace
} // namespace lumenfold
