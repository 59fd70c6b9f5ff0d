#include "platform/screencapture/PixelCrop.h"

#include <gtest/gtest.h>

#include <limits>

namespace lumenfold {
namespace {

constexpr PixelSize retina{2880, 1800};
constexpr PixelSize plain{1920, 1080};

StreamConfiguration asked(std::optional<Rect> source, int width, int height)
{
    return {.sourceRect = source, .width = width, .height = height};
}

TEST(PixelCrop, IsTheWholeDisplayWithoutASourceRectangle)
{
    const auto crop = pixelCrop(plain, 1, asked({}, 1920, 1080));
    ASSERT_TRUE(crop);
    EXPECT_EQ(crop->source, QRect(0, 0, 1920, 1080));
    EXPECT_FALSE(crop->isScaled());
}

TEST(PixelCrop, ScalesAWholeDisplayThatIsAskedForAtAnotherScale)
{
    const auto crop = pixelCrop(plain, 1, asked({}, 3840, 2160));
    ASSERT_TRUE(crop);
    EXPECT_EQ(crop->source, QRect(0, 0, 1920, 1080));
    EXPECT_EQ(crop->output, (PixelSize{3840, 2160}));
    EXPECT_TRUE(crop->isScaled());
}

TEST(PixelCrop, CutsFractionalAreasOutWithoutScaling)
{
    const auto crop = pixelCrop(retina, 2, asked(Rect{0, 0, 100.4, 50.6}, 200, 101));
    ASSERT_TRUE(crop);
    EXPECT_EQ(crop->source, QRect(0, 0, 200, 101));
    EXPECT_FALSE(crop->isScaled());
}

TEST(PixelCrop, BeginsAtTheNearestPixel)
{
    EXPECT_EQ(pixelCrop(retina, 2, asked(Rect{10.2, 20.3, 100, 50}, 200, 100))->source, QRect(20, 41, 200, 100));
    EXPECT_EQ(pixelCrop(retina, 2, asked(Rect{10.25, 20.2, 100, 50}, 200, 100))->source, QRect(21, 40, 200, 100));
}

TEST(PixelCrop, StaysOnTheDisplayAtItsFarEdge)
{
    // Truncating the size leaves room for the corner to be rounded up.
    for (int step = 0; step <= 40; ++step) {
        const double width = 100 + step / 20.0;
        const double height = 50 + step / 20.0;
        const Rect source{1440 - width, 900 - height, width, height};
        const auto crop =
            pixelCrop(retina, 2, asked(source, static_cast<int>(width * 2), static_cast<int>(height * 2)));
        ASSERT_TRUE(crop);
        EXPECT_TRUE(QRect(0, 0, 2880, 1800).contains(crop->source)) << width;
        EXPECT_FALSE(crop->isScaled()) << width;
    }
}

TEST(PixelCrop, ScalesWhenAPixelOrMoreDiffers)
{
    EXPECT_TRUE(pixelCrop(plain, 1, asked(Rect{0, 0, 100, 100}, 101, 100))->isScaled());
    EXPECT_TRUE(pixelCrop(plain, 1, asked(Rect{0, 0, 100, 100}, 100, 99))->isScaled());
    EXPECT_FALSE(pixelCrop(plain, 1, asked(Rect{0, 0, 100.99, 100.99}, 100, 100))->isScaled());
    const auto crop = pixelCrop(plain, 1, asked(Rect{10.4, 10.6, 99.8, 100}, 50, 50));
    EXPECT_EQ(crop->source, QRect(10, 11, 100, 100));
    EXPECT_EQ(crop->output, (PixelSize{50, 50}));
}

TEST(PixelCrop, KeepsAtLeastOnePixelOfATinySource)
{
    const auto crop = pixelCrop(plain, 1, asked(Rect{10.6, 10.6, 0.2, 0.2}, 2, 2));
    ASSERT_TRUE(crop);
    EXPECT_EQ(crop->source, QRect(11, 11, 1, 1));
}

TEST(PixelCrop, MayStickOutOfTheDisplay)
{
    EXPECT_EQ(pixelCrop(plain, 1, asked(Rect{-50, 1000, 200, 200}, 200, 200))->source, QRect(-50, 1000, 200, 200));
}

TEST(PixelCrop, RefusesWhatIsNoPicture)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(pixelCrop(plain, 1, asked({}, 0, 100)));
    EXPECT_FALSE(pixelCrop(plain, 1, asked({}, 100, -1)));
    EXPECT_FALSE(pixelCrop(plain, 1, asked({}, 40'000, 100)));
    EXPECT_FALSE(pixelCrop(plain, 1, asked(Rect{0, 0, 0, 10}, 1, 10)));
    EXPECT_FALSE(pixelCrop(plain, 1, asked(Rect{nan, 0, 10, 10}, 10, 10)));
    EXPECT_FALSE(pixelCrop(plain, 1, asked(Rect{0, 0, infinity, 10}, 10, 10)));
    EXPECT_FALSE(pixelCrop(plain, 1, asked(Rect{1e9, 0, 10, 10}, 10, 10)));
    EXPECT_FALSE(pixelCrop({0, 0}, 1, asked({}, 10, 10)));
}

} // namespace
} // namespace lumenfold
