#include "platform/image/PngDecoder.h"

#include "platform/image/PngEncoder.h"
#include "tests/unit/image/PngChunks.h"
#include "tests/unit/image/TestPictures.h"

#include <gmock/gmock.h>

namespace lumenfold {
namespace {

using test::PngChunk;

/// Files of other programs, as they come through the editor and the card folder.
const PngChunk end{"IEND", {}};

QByteArray row(std::initializer_list<int> bytes)
{
    QByteArray filtered(1, '\0');
    for (const int byte : bytes) {
        filtered += static_cast<char>(byte);
    }
    return filtered;
}

TEST(PngDecoder, readsAPalette)
{
    const QByteArray file = test::pngFile({test::headerChunk({.width = 2, .height = 1, .colorType = 3}),
                                           {"PLTE", QByteArray("\x01\x02\x03\xff\xfe\xfd", 6)},
                                           test::pixelChunk(row({1, 0})),
                                           end});
    const QImage picture = PngDecoder::decode(file);

    EXPECT_EQ(picture.format(), QImage::Format_RGB32);
    EXPECT_EQ(picture.pixel(0, 0), qRgb(255, 254, 253));
    EXPECT_EQ(picture.pixel(1, 0), qRgb(1, 2, 3));
}

TEST(PngDecoder, readsTheTransparencyOfAPalette)
{
    const QByteArray file = test::pngFile({test::headerChunk({.width = 2, .height = 1, .colorType = 3}),
                                           {"PLTE", QByteArray("\x01\x02\x03\xff\xfe\xfd", 6)},
                                           {"tRNS", QByteArray("\x80", 1)},
                                           test::pixelChunk(row({0, 1})),
                                           end});
    const QImage picture = PngDecoder::decode(file);

    EXPECT_EQ(picture.format(), QImage::Format_ARGB32);
    EXPECT_EQ(picture.pixel(0, 0), qRgba(1, 2, 3, 128));
    EXPECT_EQ(picture.pixel(1, 0), qRgba(255, 254, 253, 255));
}

TEST(PngDecoder, readsGreyInOneAndInSixteenBits)
{
    const QByteArray oneBit =
        test::pngFile({test::headerChunk({.width = 3, .height = 1, .bitDepth = 1, .colorType = 0}),
                       test::pixelChunk(row({0b01000000})), end});
    const QByteArray sixteenBits =
        test::pngFile({test::headerChunk({.width = 2, .height = 1, .bitDepth = 16, .colorType = 0}),
                       test::pixelChunk(row({0x80, 0x12, 0xff, 0xff})), end});

    EXPECT_EQ(PngDecoder::decode(oneBit).pixel(0, 0), qRgb(0, 0, 0));
    EXPECT_EQ(PngDecoder::decode(oneBit).pixel(1, 0), qRgb(255, 255, 255));
    EXPECT_EQ(PngDecoder::decode(sixteenBits).pixel(0, 0), qRgb(0x80, 0x80, 0x80));
    EXPECT_EQ(PngDecoder::decode(sixteenBits).pixel(1, 0), qRgb(255, 255, 255));
}

TEST(PngDecoder, readsAnInterlacedPicture)
{
    // 7 x 5, from red above to blue below.
    const QByteArray file =
        QByteArray::fromBase64("iVBORw0KGgoAAAANSUhEUgAAAAcAAAAFCAIAAAFx/1EZAAAAMElEQVQI12XKwQ0AIAzDwOt"
                               "kjNbROlr5FCGEf7Gj0QSNaNyV0mHSo+eHKMtHLPXbDVYBCvtlViDaAAAAAElFTkSuQm"
                               "CC");
    const QImage picture = PngDecoder::decode(file);

    ASSERT_EQ(picture.size(), QSize(7, 5));
    for (int x = 0; x < 7; ++x) {
        EXPECT_EQ(picture.pixel(x, 0), qRgb(255, 0, 0));
        EXPECT_EQ(picture.pixel(x, 1), qRgb(191, 0, 63));
        EXPECT_EQ(picture.pixel(x, 4), qRgb(0, 0, 255));
    }
}

TEST(PngDecoder, doesNotMindTextsAndProfilesThatItDoesNotUse)
{
    const QByteArray file = test::pngFile({test::headerChunk({}),
                                           {"gAMA", QByteArray("\x00\x00\xb1\x8f", 4)},
                                           {"tEXt", QByteArray("Software\0somebody's", 19)},
                                           {"prVt", QByteArray(100'000, 'x')},
                                           test::pixelChunk(row({1, 2, 3})),
                                           end});
    EXPECT_EQ(PngDecoder::decode(file).pixel(0, 0), qRgb(1, 2, 3));
}

TEST(PngDecoder, aFileCutShortAnywhereGivesNoPicture)
{
    const QByteArray file = PngEncoder::encodeAndWait(test::noisePicture({40, 30})).value();
    ASSERT_FALSE(PngDecoder::decode(file).isNull());
    for (qsizetype length = 0; length < file.size(); ++length) {
        EXPECT_TRUE(PngDecoder::decode(file.first(length)).isNull()) << length;
    }
}

TEST(PngDecoder, aChangedByteAnywhereGivesNoPicture)
{
    const QByteArray file = PngEncoder::encodeAndWait(test::gradientPicture({40, 30})).value();
    ASSERT_FALSE(PngDecoder::decode(file).isNull());
    for (qsizetype at = 0; at < file.size(); ++at) {
        QByteArray broken = file;
        broken[at] = static_cast<char>(broken[at] ^ 0x10);
        EXPECT_TRUE(PngDecoder::decode(broken).isNull()) << at;
    }
}

TEST(PngDecoder, doesNotMindBytesBehindTheEnd)
{
    const QImage picture = test::gradientPicture({40, 30});
    EXPECT_EQ(PngDecoder::decode(PngEncoder::encodeAndWait(picture).value() + "more"), picture);
}

TEST(PngDecoder, doesNotMindABrokenText)
{
    QByteArray file = test::pngFile(
        {test::headerChunk({}), {"tEXt", QByteArray("Author\0me", 9)}, test::pixelChunk(row({1, 2, 3})), end});
    file.replace("me", "us");
    EXPECT_EQ(PngDecoder::decode(file).pixel(0, 0), qRgb(1, 2, 3));
}

TEST(PngDecoder, aHugePictureWithoutPixelsGivesNone)
{
    const QByteArray file = test::pngFile(
        {test::headerChunk({.width = 20000, .height = 20000}), test::pixelChunk(QByteArray(1000, '\0')), end});
    EXPECT_TRUE(PngDecoder::decode(file).isNull());
}

TEST(PngDecoder, aHeaderThatTheFormatDoesNotKnowGivesNone)
{
    for (const test::PngHeader &header : {test::PngHeader{.colorType = 1},
                                          {.colorType = 7},
                                          {.bitDepth = 3},
                                          {.bitDepth = 4, .colorType = 6},
                                          {.interlace = 2}}) {
        const QByteArray file = test::pngFile({test::headerChunk(header), test::pixelChunk(row({1, 2, 3, 4})), end});
        EXPECT_TRUE(PngDecoder::decode(file).isNull());
    }
}

TEST(PngDecoder, readsAChunkOfManyMegabytes)
{
    const QImage picture = test::noisePicture({2000, 2000});
    QByteArray rows;
    for (int y = 0; y < 2000; ++y) {
        const QImage line = picture.copy(0, y, 2000, 1).convertToFormat(QImage::Format_RGB888);
        rows += QByteArray(1, '\0') + QByteArray(reinterpret_cast<const char *>(line.constBits()), 6000);
    }
    const QByteArray file =
        test::pngFile({test::headerChunk({.width = 2000, .height = 2000}), test::pixelChunk(rows), end});
    EXPECT_EQ(PngDecoder::decode(file), picture);
}

} // namespace
} // namespace lumenfold
