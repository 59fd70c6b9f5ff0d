/// Pixels as a screen has them: the byte beside the colours is anything.
#include "platform/image/Image.h"

#include "tests/support/fakes/BusyEncodingPool.h"
#include "tests/unit/image/TestPictures.h"

#include <gmock/gmock.h>

namespace lumenfold {
namespace {

const QSize size{300, 200};

QImage withStrayBytes(QImage picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            row[x] = (row[x] & RGB_MASK) | static_cast<QRgb>(x + y) << 24;
        }
    }
    return picture;
}

bool saysThatItIsOpaque(const QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(row[x]) != 255) {
                return false;
            }
        }
    }
    return !picture.isNull();
}

TEST(ScreenPixels, encodeAsTheirColours)
{
    const QImage picture = test::gradientPicture(size);
    EXPECT_EQ(Image::fromScreenPixels(withStrayBytes(picture)).pngData(), Image::fromPixels(picture).pngData());
}

TEST(ScreenPixels, areOpaqueForWhoeverAsks)
{
    const QImage picture = test::gradientPicture(size);
    const Image image = Image::fromScreenPixels(withStrayBytes(picture));
    EXPECT_EQ(image.pixels(), picture);
    EXPECT_TRUE(saysThatItIsOpaque(image.pixels()));
    EXPECT_EQ(image.pixels().constBits(), image.pixels().constBits()) << "made once";
}

TEST(ScreenPixels, stayAsTheyAreForTheEncoding)
{
    const QImage stray = withStrayBytes(test::gradientPicture(size));
    const QImage before = stray.copy();
    test::BusyEncodingPool pool;
    const Image image = Image::fromScreenPixels(stray);
    EXPECT_TRUE(saysThatItIsOpaque(image.pixels()));
    EXPECT_EQ(std::memcmp(stray.constBits(), before.constBits(), static_cast<std::size_t>(stray.sizeInBytes())), 0);
    pool.release();
    EXPECT_TRUE(image.pngData());
}

TEST(ScreenPixels, areLetGoOnceEncodedAlsoWhenSomebodyAsked)
{
    test::BusyEncodingPool pool;
    const Image image = Image::fromScreenPixels(withStrayBytes(test::gradientPicture(size)));
    image.releasePixelsWhenEncoded();
    EXPECT_TRUE(saysThatItIsOpaque(image.pixels()));
    pool.release();
    EXPECT_TRUE(image.pngData());
    EXPECT_FALSE(image.holdsPixels());
    EXPECT_TRUE(saysThatItIsOpaque(image.pixels()));
}

TEST(ScreenPixels, giveOpaqueThumbnails)
{
    for (const PixelSize bounds : {PixelSize{30, 20}, PixelSize{300, 200}, PixelSize{1000, 1000}}) {
        const QImage picture = test::gradientPicture(size);
        const QImage thumbnail = Image::fromScreenPixels(withStrayBytes(picture)).thumbnail(bounds);
        EXPECT_TRUE(saysThatItIsOpaque(thumbnail)) << bounds.width;
        EXPECT_EQ(thumbnail, Image::fromPixels(picture).thumbnail(bounds)) << bounds.width;
    }
}

} // namespace
} // namespace lumenfold
