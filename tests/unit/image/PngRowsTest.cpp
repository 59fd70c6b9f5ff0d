#include "platform/image/PngRows.h"

#include "platform/image/PngDecoder.h"
#include "platform/image/PngEncoder.h"
#include "tests/unit/image/PngChunks.h"
#include "tests/unit/image/TestPictures.h"

#include <gtest/gtest.h>

#include <random>

namespace lumenfold {
namespace {

using namespace test;

/// Null when the file is refused or broken.
QImage readAllRows(const QByteArray &file)
{
    std::optional<PngRows> rows = PngRows::open(file);
    if (!rows) {
        return {};
    }
    const bool hasAlpha = rows->pixelBytes() == 4;
    QImage picture(rows->size().width, rows->size().height, hasAlpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
    for (int y = 0; y < picture.height(); ++y) {
        const unsigned char *row = rows->next();
        if (!row) {
            EXPECT_EQ(rows->next(), nullptr);
            return {};
        }
        std::copy_n(row, static_cast<std::size_t>(picture.width()) * rows->pixelBytes(), picture.scanLine(y));
    }
    return picture.convertToFormat(hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
}

constexpr int side = 40;

QByteArray filteredNoise(int rows = side)
{
    std::mt19937 random(1);
    QByteArray bytes;
    for (int row = 0; row < rows; ++row) {
        bytes += static_cast<char>(row % 5);
        for (int at = 0; at < side * 3; ++at) {
            bytes += static_cast<char>(random());
        }
    }
    return bytes;
}

const PngChunk end{"IEND", {}};

TEST(PngRows, areThoseThatTheEncoderWrote)
{
    for (const QSize size : {QSize(1, 1), QSize(7, 300), QSize(1000, 700), QSize(32768, 2)}) {
        for (const QImage &picture : {noisePicture(size), gradientPicture(size), plainPicture(size)}) {
            EXPECT_EQ(readAllRows(PngEncoder::encodeAndWait(picture).value()), picture);
        }
    }
}

TEST(PngRows, mayHaveAlpha)
{
    for (const QSize size : {QSize(1, 1), QSize(7, 300), QSize(1000, 700)}) {
        for (const QImage &picture : {noisePicture(size), gradientPicture(size)}) {
            const QImage translucent = withTransparency(picture);
            EXPECT_EQ(readAllRows(PngEncoder::encodeAndWait(translucent).value()), translucent);
        }
    }
}

TEST(PngRows, areReadBetweenWhatDoesNotChangeThem)
{
    const PngChunk header = headerChunk({.width = side, .height = side});
    const PngChunk pixels = pixelChunk(filteredNoise());
    const QImage expected = readAllRows(pngFile({header, pixels, end}));
    ASSERT_FALSE(expected.isNull());
    EXPECT_EQ(readAllRows(pngFile({header, {"sRGB", QByteArray(1, '\0')}, {"tEXt", "a"}, pixels, {"tEXt", {}}, end})),
              expected);
}

TEST(PngRows, mayHaveEveryFilterAndAlpha)
{
    std::mt19937 random(2);
    QByteArray rows;
    for (int row = 0; row < side; ++row) {
        rows += static_cast<char>(row % 5);
        for (int at = 0; at < side * 4; ++at) {
            rows += static_cast<char>(random());
        }
    }
    const QByteArray file =
        pngFile({headerChunk({.width = side, .height = side, .colorType = 6}), pixelChunk(rows), end});
    const QImage expected = PngDecoder::decode(file);
    ASSERT_FALSE(expected.isNull());
    EXPECT_EQ(readAllRows(file), expected);
}

TEST(PngRows, mayHaveEveryFilter)
{
    const QByteArray file = pngFile({headerChunk({.width = side, .height = side}), pixelChunk(filteredNoise()), end});
    const QImage expected = PngDecoder::decode(file);
    ASSERT_FALSE(expected.isNull());
    EXPECT_EQ(readAllRows(file), expected);
}

TEST(PngRows, mayBeCutIntoPiecesOfAnySize)
{
    const QByteArray data = pixelChunk(filteredNoise()).data;
    const QImage expected =
        PngDecoder::decode(pngFile({headerChunk({.width = side, .height = side}), {"IDAT", data}, end}));
    for (const qsizetype piece : {1, 2, 3, 1000}) {
        std::vector<PngChunk> chunks{headerChunk({.width = side, .height = side}), {"IDAT", {}}};
        for (qsizetype at = 0; at < data.size(); at += piece) {
            chunks.push_back({"IDAT", data.mid(at, piece)});
        }
        chunks.push_back({"IDAT", {}});
        chunks.push_back(end);
        EXPECT_EQ(readAllRows(pngFile(chunks)), expected) << piece;
    }
}

TEST(PngRows, areNotReadFromOtherKindsOfFiles)
{
    EXPECT_FALSE(PngRows::open({}));
    EXPECT_FALSE(PngRows::open("no picture at all, but long enough to have a header"));
    const PngChunk pixels = pixelChunk(QByteArray(10'000, '\0'));
    for (const PngHeader &header :
         {PngHeader{.width = 9, .height = 9, .bitDepth = 16}, PngHeader{.width = 9, .height = 9, .colorType = 0},
          PngHeader{.width = 9, .height = 9, .interlace = 1}}) {
        EXPECT_FALSE(PngRows::open(pngFile({headerChunk(header), pixels, end})));
    }
    const PngChunk plain = headerChunk({.width = 9, .height = 9});
    EXPECT_TRUE(PngRows::open(pngFile({plain, pixels, end})));
    EXPECT_FALSE(PngRows::open(pngFile({plain, {"tRNS", QByteArray(6, '\0')}, pixels, end})));
    EXPECT_FALSE(PngRows::open(pngFile({plain, {"PLTE", QByteArray(3, '\0')}, pixels, end})));
    EXPECT_FALSE(PngRows::open(pngFile({plain, pixels, {"tEXt", "a"}, pixels, end})));
    EXPECT_FALSE(PngRows::open(pngFile({plain, end})));
    EXPECT_FALSE(PngRows::open(pngFile({plain, {"IDAT", {}}, end})));
    EXPECT_FALSE(PngRows::open(pngFile({plain, {"IDAT", "\x18\x19"}, end})));
}

TEST(PngRows, endWhereAFileIsBroken)
{
    const PngChunk header = headerChunk({.width = side, .height = side});
    const PngChunk whole = pixelChunk(filteredNoise());
    ASSERT_FALSE(readAllRows(pngFile({header, whole, end})).isNull());
    EXPECT_TRUE(readAllRows(pngFile({header, pixelChunk(filteredNoise(side - 1)), end})).isNull());
    EXPECT_TRUE(readAllRows(pngFile({header, {"IDAT", whole.data.first(whole.data.size() / 2)}, end})).isNull());
    EXPECT_TRUE(readAllRows(pngFile({header, {"IDAT", whole.data.first(2) + "nonsense"}, end})).isNull());
    QByteArray sixthFilter = filteredNoise();
    sixthFilter[0] = 5;
    EXPECT_TRUE(readAllRows(pngFile({header, pixelChunk(sixthFilter), end})).isNull());
    QByteArray flipped = pngFile({header, whole, end});
    flipped[flipped.size() / 2] = static_cast<char>(~flipped[flipped.size() / 2]);
    EXPECT_TRUE(readAllRows(flipped).isNull());
}

TEST(PngRows, takeNoMemoryForWhatAFileClaims)
{
    const QByteArray file = pngFile({headerChunk({.width = 30'000, .height = 17'000}), pixelChunk("x"), end});
    std::optional<PngRows> rows = PngRows::open(file);
    ASSERT_TRUE(rows);
    EXPECT_EQ(rows->size(), (PixelSize{30'000, 17'000}));
    EXPECT_EQ(rows->next(), nullptr);
}

} // namespace
} // namespace lumenfold
