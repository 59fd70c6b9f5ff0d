#include "platform/image/PngEncoder.h"

#include "platform/image/PngBand.h"
#include "platform/image/PngDecoder.h"
#include "tests/support/fakes/BusyEncodingPool.h"
#include "tests/unit/image/PngChunks.h"
#include "tests/unit/image/TestPictures.h"

#include <QSemaphore>

#include <gmock/gmock.h>

#include <spng.h>

namespace lumenfold {
namespace {

using ::testing::SizeIs;

/// Decoded by libspng alone, into memory as the file orders it.
QImage readWithSpng(const QByteArray &file)
{
    spng_ctx *context = spng_ctx_new(0);
    spng_set_png_buffer(context, file.constData(), static_cast<std::size_t>(file.size()));
    spng_ihdr header{};
    QImage picture;
    if (spng_get_ihdr(context, &header) == SPNG_OK) {
        picture = QImage(static_cast<int>(header.width), static_cast<int>(header.height), QImage::Format_RGBA8888);
        if (spng_decode_image(context, picture.bits(), static_cast<std::size_t>(picture.sizeInBytes()), SPNG_FMT_RGBA8,
                              0) != SPNG_OK) {
            picture = QImage();
        }
    }
    spng_ctx_free(context);
    return picture.convertToFormat(QImage::Format_ARGB32);
}

QByteArray encoded(const QImage &picture)
{
    const std::optional<QByteArray> file = PngEncoder::encodeAndWait(picture);
    EXPECT_TRUE(file);
    return file.value_or(QByteArray());
}

void expectRoundTrip(const QImage &picture)
{
    SCOPED_TRACE(testing::Message() << picture.width() << " x " << picture.height() << ", format " << picture.format());
    const QByteArray file = encoded(picture);
    const QImage expected = picture.convertToFormat(QImage::Format_ARGB32);

    EXPECT_EQ(readWithSpng(file), expected);
    EXPECT_EQ(QImage::fromData(file, "PNG").convertToFormat(QImage::Format_ARGB32), expected);
    EXPECT_EQ(PngDecoder::decode(file).convertToFormat(QImage::Format_ARGB32), expected);
}

std::uint8_t colorTypeOf(const QByteArray &file)
{
    return static_cast<std::uint8_t>(test::chunksOf(file).front().data[9]);
}

class PngEncoderSizes : public ::testing::TestWithParam<QSize> {};

TEST_P(PngEncoderSizes, everyPixelComesBack)
{
    const QSize size = GetParam();
    for (const QImage &picture : {test::plainPicture(size), test::gradientPicture(size), test::noisePicture(size),
                                  test::textLikePicture(size)}) {
        expectRoundTrip(picture);
        expectRoundTrip(test::withTransparency(picture));
        expectRoundTrip(test::withPaddedRows(picture));
        expectRoundTrip(test::withPaddedRows(test::withTransparency(picture)));
    }
}

// Odd sizes, sizes around the width of a vector, fewer rows than threads, rows longer than a band.
INSTANTIATE_TEST_SUITE_P(, PngEncoderSizes,
                         ::testing::Values(QSize(1, 1), QSize(1, 2), QSize(2, 1), QSize(3, 2), QSize(4, 4), QSize(5, 7),
                                           QSize(9, 1), QSize(10, 3), QSize(257, 3), QSize(1, 700), QSize(3000, 2),
                                           QSize(32768, 9), QSize(5, 32768), QSize(641, 479)),
                         [](const auto &size) {
                             return std::to_string(size.param.width()) + "x" + std::to_string(size.param.height());
                         });

TEST(PngEncoder, everyPixelOfAWholeDesktopComesBack)
{
    expectRoundTrip(test::gradientPicture({3840, 2160}));
    expectRoundTrip(test::noisePicture({3840, 2160}));
    expectRoundTrip(test::textLikePicture({3840, 2160}));
}

TEST(PngEncoder, everyPixelOfARowOfScreensComesBack)
{
    const QImage picture = test::gradientPicture({16384, 2160});
    EXPECT_EQ(PngDecoder::decode(encoded(picture)), picture);
}

TEST(PngEncoder, theBandsJoinIntoOneZlibStream)
{
    const QImage picture = test::noisePicture({1000, 1000});
    const std::vector<test::PngChunk> chunks = test::chunksOf(encoded(picture));

    const QByteArray rows = test::inflatedPixelData(chunks);

    EXPECT_EQ(rows.size(), 1000 * (1 + 3 * 1000));
    const auto bands = png::cutIntoBands({1000, 1000}, png::ColorType::rgb);
    EXPECT_GT(bands.size(), 3U);
    // Beside the bands: header, checksum of the stream, end.
    EXPECT_THAT(chunks, SizeIs(bands.size() + 3));
    EXPECT_EQ(chunks.front().type, "IHDR");
    EXPECT_EQ(chunks.back().type, "IEND");
}

TEST(PngEncoder, bandsCoverEveryRowOnce)
{
    for (const PixelSize size : {PixelSize{1, 1}, {1, 32768}, {32768, 1}, {1000, 1000}, {3840, 2160}, {32768, 77}}) {
        int next = 0;
        for (const png::Rows &rows : png::cutIntoBands(size, png::ColorType::rgba)) {
            EXPECT_EQ(rows.first, next);
            EXPECT_GT(rows.count, 0);
            next += rows.count;
        }
        EXPECT_EQ(next, size.height);
    }
}

TEST(PngEncoder, anOpaquePictureHasNoAlphaChannel)
{
    constexpr std::uint8_t rgb = 2;
    constexpr std::uint8_t rgba = 6;
    const QImage opaque = test::gradientPicture({300, 200});
    QImage oneTransparentPixel = opaque.convertToFormat(QImage::Format_ARGB32);
    oneTransparentPixel.setPixel(299, 199, qRgba(1, 2, 3, 254));

    EXPECT_EQ(colorTypeOf(encoded(opaque)), rgb);
    EXPECT_EQ(colorTypeOf(encoded(opaque.convertToFormat(QImage::Format_ARGB32))), rgb);
    EXPECT_EQ(colorTypeOf(encoded(oneTransparentPixel)), rgba);
    EXPECT_EQ(QImage::fromData(encoded(oneTransparentPixel)).pixel(299, 199), qRgba(1, 2, 3, 254));
}

TEST(PngEncoder, theUnusedByteOfAnOpaquePixelDoesNotMatter)
{
    // As the X server leaves it.
    QImage picture = test::gradientPicture({64, 64});
    for (int y = 0; y < 64; ++y) {
        auto *row = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < 64; ++x) {
            row[x] &= RGB_MASK;
        }
    }
    EXPECT_EQ(encoded(picture), encoded(test::gradientPicture({64, 64})));
}

TEST(PngEncoder, textIsMuchSmallerThanItsPixels)
{
    // Nobody would notice in a picture that is read back right that no filter or no match ever helped.
    EXPECT_LT(encoded(test::textLikePicture({1920, 1080})).size(), 1920 * 1080 * 3 / 12);
    EXPECT_LT(encoded(test::gradientPicture({1920, 1080})).size(), 1920 * 1080 * 3 / 50);
}

TEST(PngEncoder, thePixelsAreNotCopied)
{
    // A change of the pixels before the encoding begins is in the file: nobody had taken a copy.
    QImage picture = test::plainPicture({100, 100}, Qt::black);
    QImage window(picture.bits(), 100, 100, QImage::Format_RGB32);
    std::optional<QByteArray> file;
    QSemaphore finished;
    {
        test::BusyEncodingPool busy;
        PngEncoder::encode(window, [&](std::optional<QByteArray> made) {
            file = std::move(made);
            finished.release();
        });
        picture.fill(Qt::white);
    }
    finished.acquire();
    EXPECT_EQ(QImage::fromData(file.value()).pixelColor(50, 50), QColor(Qt::white));
}

TEST(PngEncoder, refusesWhatItCannotEncode)
{
    EXPECT_FALSE(PngEncoder::encodeAndWait(QImage()));
    EXPECT_FALSE(PngEncoder::encodeAndWait(QImage(10, 10, QImage::Format_RGB888)));
    EXPECT_FALSE(PngEncoder::encodeAndWait(test::plainPicture({32769, 1})));
    EXPECT_FALSE(PngEncoder::encodeAndWait(test::plainPicture({1, 32769})));
}

} // namespace
} // namespace lumenfold
