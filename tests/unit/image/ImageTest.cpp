#include "platform/image/Image.h"

#include "tests/support/fakes/BusyEncodingPool.h"
#include "tests/unit/image/PngChunks.h"
#include "tests/unit/image/TestPictures.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QObject>

#include <gmock/gmock.h>

#include <atomic>

namespace lumenfold {
namespace {

using test::BusyEncodingPool;

const PixelSize ordinarySize{40, 30};

Image fromEncodedPixels(const QImage &pixels)
{
    Image image = Image::fromPixels(pixels);
    EXPECT_TRUE(image.pngData());
    return image;
}

QImage tooLongForPng()
{
    return test::plainPicture({32769, 1});
}

TEST(Image, noPictureHasNothing)
{
    const Image image;
    EXPECT_TRUE(image.isNull());
    EXPECT_FALSE(image.pixelSize());
    EXPECT_EQ(image.size(), (Size{0, 0}));
    EXPECT_TRUE(image.pixels().isNull());
    EXPECT_FALSE(image.holdsPixels());
    EXPECT_FALSE(image.pngData());
    EXPECT_TRUE(image.isEncoded());
    EXPECT_TRUE(image.thumbnail({10, 10}).isNull());
    image.releasePixelsWhenEncoded();
    EXPECT_TRUE(Image::fromPixels(QImage()).isNull());
}

TEST(Image, withoutRepresentationHasASizeAndNothingElse)
{
    const Image image = Image::withoutRepresentation({200, 100});
    EXPECT_FALSE(image.isNull());
    EXPECT_EQ(image.size(), (Size{200, 100}));
    EXPECT_FALSE(image.pixelSize());
    EXPECT_TRUE(image.pixels().isNull());
    EXPECT_FALSE(image.pngData());
    EXPECT_TRUE(image.isEncoded());
    EXPECT_TRUE(image.thumbnail({10, 10}).isNull());
}

TEST(Image, handlesAreEqualWhenTheyShareThePicture)
{
    const Image image = Image::fromPixels(test::plainPicture({4, 4}));
    const Image copy = image; // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(image, copy);
    EXPECT_NE(image, Image::fromPixels(test::plainPicture({4, 4})));
    EXPECT_EQ(Image(), Image());
    EXPECT_NE(image, Image());
}

TEST(Image, onePointIsOnePixel)
{
    QImage pixels = test::plainPicture({40, 30});
    pixels.setDevicePixelRatio(2);
    const Image image = Image::fromPixels(pixels);
    EXPECT_EQ(image.pixelSize(), ordinarySize);
    EXPECT_EQ(image.size(), (Size{40, 30}));
    EXPECT_EQ(image.pixels().devicePixelRatio(), 1);
}

TEST(Image, pixelsAndBytesAreOfTheSamePicture)
{
    const QImage pixels = test::gradientPicture({40, 30});
    const Image image = Image::fromPixels(pixels);
    EXPECT_EQ(image.pixels(), pixels);
    EXPECT_EQ(QImage::fromData(image.pngData().value()), pixels);
    EXPECT_TRUE(image.isEncoded());
}

TEST(Image, keepsTransparency)
{
    const QImage pixels = test::withTransparency(test::gradientPicture({40, 30}));
    const Image image = Image::fromPixels(pixels);
    EXPECT_EQ(image.pixels(), pixels);
    EXPECT_EQ(QImage::fromData(image.pngData().value()).convertToFormat(QImage::Format_ARGB32), pixels);
}

TEST(Image, convertsOtherFormats)
{
    const QImage pixels = test::gradientPicture({40, 30});
    EXPECT_EQ(Image::fromPixels(pixels.convertToFormat(QImage::Format_RGB888)).pixels(), pixels);
    EXPECT_EQ(Image::fromPixels(pixels.convertToFormat(QImage::Format_ARGB32_Premultiplied)).pixels().format(),
              QImage::Format_ARGB32);
}

TEST(Image, sharesThePixelsThatItIsGiven)
{
    const QImage pixels = test::gradientPicture({40, 30});
    const Image image = Image::fromPixels(pixels);
    EXPECT_EQ(image.pixels().constBits(), pixels.constBits());
}

TEST(Image, theBytesAreMadeOnce)
{
    const Image image = fromEncodedPixels(test::gradientPicture({40, 30}));
    EXPECT_EQ(image.pngData()->constData(), image.pngData()->constData());
    EXPECT_EQ(Image(image).pngData()->constData(), image.pngData()->constData());
}

TEST(Image, thePixelsAreMadeOnce)
{
    const QImage pixels = test::gradientPicture({40, 30});
    const Image image = Image::fromPng(fromEncodedPixels(pixels).pngData().value());
    EXPECT_FALSE(image.holdsPixels());
    EXPECT_EQ(image.pixels(), pixels);
    EXPECT_TRUE(image.holdsPixels());
    EXPECT_EQ(image.pixels().constBits(), image.pixels().constBits());
}

TEST(Image, keepsPngBytesAsTheyAre)
{
    const QByteArray png = test::pngFile({test::headerChunk({.width = 1, .height = 1}),
                                          {"tEXt", QByteArray("Author\0me", 9)},
                                          test::pixelChunk(QByteArray("\0\1\2\3", 4)),
                                          {"IEND", {}}});
    const Image image = Image::fromPng(png);
    EXPECT_EQ(image.pixelSize(), (PixelSize{1, 1}));
    EXPECT_EQ(image.pngData(), png);
    EXPECT_TRUE(image.isEncoded());
    EXPECT_EQ(image.pixels().pixel(0, 0), qRgb(1, 2, 3));
}

TEST(Image, bytesThatAreNoPngAreNoPicture)
{
    EXPECT_TRUE(Image::fromPng({}).isNull());
    EXPECT_TRUE(Image::fromPng("no picture").isNull());
    EXPECT_TRUE(Image::fromPng(test::pngFile({test::headerChunk({.width = 40000})})).isNull());
}

TEST(Image, brokenBytesHaveASizeAndNoPixels)
{
    QByteArray png = fromEncodedPixels(test::noisePicture({40, 30})).pngData().value();
    png[200] = static_cast<char>(png[200] ^ 1);
    const Image image = Image::fromPng(png);
    EXPECT_EQ(image.pixelSize(), ordinarySize);
    EXPECT_TRUE(image.pixels().isNull());
    EXPECT_TRUE(image.thumbnail({10, 10}).isNull());
    EXPECT_EQ(image.pngData(), png);
}

TEST(Image, whatCannotBeEncodedKeepsItsPixels)
{
    const Image image = Image::fromPixels(tooLongForPng());
    image.releasePixelsWhenEncoded();
    EXPECT_FALSE(image.pngData());
    EXPECT_TRUE(image.isEncoded());
    EXPECT_EQ(image.pixels(), tooLongForPng());
}

TEST(Image, releasesThePixelsWhenTheBytesAreThere)
{
    const QImage pixels = test::gradientPicture({40, 30});
    BusyEncodingPool busy;
    const Image image = Image::fromPixels(pixels);
    image.releasePixelsWhenEncoded();
    EXPECT_TRUE(image.holdsPixels());

    busy.release();

    EXPECT_FALSE(image.holdsPixels());
    EXPECT_EQ(image.pixels(), pixels);
    EXPECT_FALSE(image.holdsPixels());
    EXPECT_EQ(image.pixelSize(), ordinarySize);
}

TEST(Image, releasesThePixelsAtOnceWhenTheBytesAreThereAlready)
{
    const Image image = fromEncodedPixels(test::gradientPicture({40, 30}));
    EXPECT_TRUE(image.holdsPixels());
    image.releasePixelsWhenEncoded();
    EXPECT_FALSE(image.holdsPixels());
}

TEST(Image, aThumbnailKeepsTheProportions)
{
    const Image image = Image::fromPixels(test::plainPicture({400, 100}));
    EXPECT_EQ(image.thumbnail({200, 200}).size(), QSize(200, 50));
    EXPECT_EQ(image.thumbnail({200, 25}).size(), QSize(100, 25));
    EXPECT_EQ(image.thumbnail({50, 1000}).pixelColor(20, 5), QColor(Qt::darkCyan));
}

TEST(Image, aThumbnailIsNeverLargerThanThePicture)
{
    const QImage pixels = test::gradientPicture({40, 30});
    EXPECT_EQ(Image::fromPixels(pixels).thumbnail({4000, 4000}), pixels);
    EXPECT_EQ(Image::fromPixels(test::plainPicture({1000, 1})).thumbnail({10, 10}).size(), QSize(10, 1));
    EXPECT_TRUE(Image::fromPixels(pixels).thumbnail({0, 10}).isNull());
}

TEST(Image, aThumbnailIsSmooth)
{
    // Stripes of one pixel become even grey; picking pixels would leave black or white.
    QImage stripes(400, 300, QImage::Format_RGB32);
    for (int y = 0; y < 300; ++y) {
        for (int x = 0; x < 400; ++x) {
            stripes.setPixelColor(x, y, x % 2 == 0 ? Qt::black : Qt::white);
        }
    }
    const QImage thumbnail = Image::fromPixels(stripes).thumbnail({40, 30});
    for (int y = 0; y < 30; ++y) {
        for (int x = 0; x < 40; ++x) {
            EXPECT_NEAR(thumbnail.pixelColor(x, y).red(), 127, 3);
        }
    }
}

TEST(Image, aThumbnailIsMadeOnceForItsBounds)
{
    const Image image = fromEncodedPixels(test::gradientPicture({400, 300}));
    image.releasePixelsWhenEncoded();
    const QImage first = image.thumbnail({100, 100});
    const QImage other = image.thumbnail({50, 50});
    EXPECT_EQ(image.thumbnail({100, 100}).constBits(), first.constBits());
    EXPECT_EQ(image.thumbnail({50, 50}).constBits(), other.constBits());
    EXPECT_FALSE(image.holdsPixels());
}

TEST(Image, bytesAreWaitedFor)
{
    const Image image = Image::fromPixels(test::noisePicture({2000, 2000}));
    EXPECT_TRUE(image.pngData());
}

TEST(Image, isNotEncodedUntilItIs)
{
    BusyEncodingPool busy;
    const Image image = Image::fromPixels(test::plainPicture({4, 4}));
    EXPECT_FALSE(image.isEncoded());
    busy.release();
    EXPECT_TRUE(image.isEncoded());
}

} // namespace
} // namespace lumenfold
