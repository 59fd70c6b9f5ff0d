#include "capture/CaptureGeometry.h"

#include <gtest/gtest.h>

#include <limits>

namespace lumenfold {
namespace {

Screen screenOfScale(double scale)
{
    return {.displayID = 1, .frame = {0, 0, 1440, 900}, .visibleFrame = {0, 0, 1440, 900}, .backingScale = scale};
}

TEST(SourceRect, BeginsAtTheTopLeftCornerOfTheScreen)
{
    EXPECT_EQ(sourceRect({0, 800, 100, 100}, {0, 0, 1440, 900}), (Rect{0, 0, 100, 100}));
}

TEST(SourceRect, EndsAtTheBottomRightCornerOfTheScreen)
{
    EXPECT_EQ(sourceRect({1340, 0, 100, 50}, {0, 0, 1440, 900}), (Rect{1340, 850, 100, 50}));
}

TEST(SourceRect, IsRelativeToTheScreensOwnOrigin)
{
    // A screen to the left of the main one, hanging lower.
    EXPECT_EQ(sourceRect({-1900, -80, 30, 40}, {-1920, -100, 1920, 1080}), (Rect{20, 1020, 30, 40}));
}

TEST(SourceRect, MayReachBeyondTheScreen)
{
    EXPECT_EQ(sourceRect({1400, 850, 100, 100}, {0, 0, 1440, 900}), (Rect{1400, -50, 100, 100}));
}

TEST(AreaOutputSize, IsTruncated)
{
    EXPECT_EQ(areaOutputSize({100.4, 50.6}, 2), (PixelSize{200, 101}));
    EXPECT_EQ(areaOutputSize({0.9, 1.9}, 1), (PixelSize{0, 1}));
}

TEST(AreaOutputSize, KeepsAFractionalScale)
{
    EXPECT_EQ(areaOutputSize({100, 101}, 1.5), (PixelSize{150, 151}));
}

TEST(AreaOutputSize, IsANumberForEverySize)
{
    constexpr int largest = std::numeric_limits<int>::max();
    EXPECT_EQ(areaOutputSize({1e300, std::numeric_limits<double>::infinity()}, 2), (PixelSize{largest, largest}));
    EXPECT_EQ(areaOutputSize({std::numeric_limits<double>::quiet_NaN(), 1}, 2), (PixelSize{0, 2}));
}

TEST(FullScreenOutputSize, GoesByTheMainScreensScale)
{
    const ShareableDisplay secondary{.displayID = 2, .width = 1920, .height = 1080};
    EXPECT_EQ(fullScreenOutputSize(secondary, screenOfScale(2)), (PixelSize{3840, 2160}));
}

TEST(FullScreenOutputSize, TruncatesTheScale)
{
    EXPECT_EQ(fullScreenOutputSize({.displayID = 1, .width = 1440, .height = 900}, screenOfScale(1.75)),
              (PixelSize{1440, 900}));
}

TEST(FullScreenOutputSize, DoublesWithoutAMainScreen)
{
    EXPECT_EQ(fullScreenOutputSize({.displayID = 1, .width = 1440, .height = 900}, std::nullopt),
              (PixelSize{2880, 1800}));
}

} // namespace
} // namespace lumenfold
