#include "platform/image/AreaAverage.h"
#include "platform/image/Image.h"
#include "tests/unit/image/TestPictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace lumenfold {
namespace {

QImage pictureOf(int width, const std::vector<QRgb> &pixels)
{
    QImage picture(width, static_cast<int>(pixels.size()) / width, QImage::Format_RGB32);
    for (std::size_t at = 0; at < pixels.size(); ++at) {
        picture.setPixel(static_cast<int>(at) % width, static_cast<int>(at) / width, pixels[at]);
    }
    return picture;
}

/// The average over a pixel's area, worked out one pixel at a time with fractions.
QRgb averageAt(const QImage &picture, PixelSize target, int x, int y)
{
    const double left = static_cast<double>(x) * picture.width() / target.width;
    const double right = static_cast<double>(x + 1) * picture.width() / target.width;
    const double top = static_cast<double>(y) * picture.height() / target.height;
    const double bottom = static_cast<double>(y + 1) * picture.height() / target.height;
    double red = 0;
    double green = 0;
    double blue = 0;
    for (int row = static_cast<int>(top); row < std::min<double>(bottom, picture.height()); ++row) {
        for (int column = static_cast<int>(left); column < std::min<double>(right, picture.width()); ++column) {
            const double share = (std::min<double>(right, column + 1) - std::max<double>(left, column)) *
                                 (std::min<double>(bottom, row + 1) - std::max<double>(top, row)) /
                                 ((right - left) * (bottom - top));
            const QRgb pixel = picture.pixel(column, row);
            red += share * qRed(pixel);
            green += share * qGreen(pixel);
            blue += share * qBlue(pixel);
        }
    }
    return qRgb(static_cast<int>(std::lround(red)), static_cast<int>(std::lround(green)),
                static_cast<int>(std::lround(blue)));
}

TEST(AreaAverage, weighsPixelsByTheAreaThatIsCovered)
{
    const QRgb black = qRgb(0, 0, 0);
    EXPECT_EQ(
        AreaAverage::of(pictureOf(2, {qRgb(10, 20, 30), qRgb(30, 20, 10), qRgb(50, 0, 0), qRgb(10, 0, 0)}), {1, 1}),
        pictureOf(1, {qRgb(25, 10, 10)}));
    // Two thirds of the first and one third of the second pixel.
    EXPECT_EQ(AreaAverage::of(pictureOf(3, {qRgb(90, 0, 0), qRgb(30, 0, 0), black}), {2, 1}),
              pictureOf(2, {qRgb(70, 0, 0), qRgb(10, 0, 0)}));
    EXPECT_EQ(AreaAverage::of(pictureOf(1, {qRgb(0, 90, 0), qRgb(0, 30, 0), black}), {1, 2}),
              pictureOf(1, {qRgb(0, 70, 0), qRgb(0, 10, 0)}));
}

TEST(AreaAverage, leavesAPictureOfItsOwnSizeAsItIs)
{
    const QImage picture = test::noisePicture({31, 17});
    EXPECT_EQ(AreaAverage::of(picture, {31, 17}), picture);
}

TEST(AreaAverage, isTheAverageForEverySize)
{
    const QImage picture = test::noisePicture({61, 43});
    for (const PixelSize target : {PixelSize{60, 42}, {61, 1}, {1, 43}, {7, 5}, {30, 43}, {1, 1}, {41, 20}}) {
        const QImage result = AreaAverage::of(picture, target);
        ASSERT_EQ(result.size(), QSize(target.width, target.height));
        for (int y = 0; y < target.height; ++y) {
            for (int x = 0; x < target.width; ++x) {
                const QRgb expected = averageAt(picture, target, x, y);
                const QRgb actual = result.pixel(x, y);
                // Half a step may be rounded either way by the fractions of the other calculation.
                ASSERT_LE(std::abs(qRed(actual) - qRed(expected)), 1);
                ASSERT_LE(std::abs(qGreen(actual) - qGreen(expected)), 1);
                ASSERT_LE(std::abs(qBlue(actual) - qBlue(expected)), 1);
            }
        }
    }
}

TEST(AreaAverage, doesNotOverflowInTallPictures)
{
    EXPECT_EQ(AreaAverage::of(test::plainPicture({3, 32768}, Qt::white), {2, 3}),
              test::plainPicture({2, 3}, Qt::white));
    EXPECT_EQ(AreaAverage::of(test::plainPicture({32768, 3}, Qt::white), {1, 1}),
              test::plainPicture({1, 1}, Qt::white));
}

TEST(AreaAverage, isTheSameFromAFileAsFromPixels)
{
    const QImage pixels = test::noisePicture({300, 200});
    const Image fresh = Image::fromPixels(pixels);
    const Image stored = Image::fromPng(fresh.pngData().value());
    const QImage thumbnail = fresh.thumbnail({70, 70});
    EXPECT_EQ(thumbnail.size(), QSize(70, 46));
    EXPECT_EQ(stored.thumbnail({70, 70}), thumbnail);
    EXPECT_FALSE(stored.holdsPixels());

    // The same with alpha that says nothing.
    const Image withAlpha =
        Image::fromPng(Image::fromPixels(pixels.convertToFormat(QImage::Format_ARGB32)).pngData().value());
    EXPECT_EQ(withAlpha.thumbnail({70, 70}), thumbnail);
    EXPECT_FALSE(withAlpha.holdsPixels());
    // And with alpha that does.
    const QImage translucent = test::withTransparency(pixels);
    const Image seen = Image::fromPng(Image::fromPixels(translucent).pngData().value());
    EXPECT_EQ(seen.thumbnail({70, 70}), Image::fromPixels(translucent).thumbnail({70, 70}));
    EXPECT_TRUE(seen.thumbnail({70, 70}).hasAlphaChannel());
}

} // namespace
} // namespace lumenfold
