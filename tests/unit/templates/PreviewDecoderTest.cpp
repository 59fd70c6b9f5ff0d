#include "service/templates/PreviewDecoder.h"

#include "tests/unit/image/PngChunks.h"
#include "tests/unit/templates/PreviewPictures.h"

#include <QPainter>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

constexpr PixelSize bounds{120, 90};

/// Red above, blue below.
QImage twoColors(QSize size)
{
    QImage picture = plainPicture(size, Qt::red);
    QPainter(&picture).fillRect(0, size.height() / 2, size.width(), size.height(), Qt::blue);
    return picture;
}

TEST(PreviewDecoderTest, PicturesAreScaledDownInTheirProportions)
{
    for (const char *format : {"png", "jpeg"}) {
        EXPECT_EQ(decodePreview(fileOf(plainPicture({1200, 600}), format), bounds).size(), QSize(120, 60)) << format;
        EXPECT_EQ(decodePreview(fileOf(plainPicture({600, 1800}), format), bounds).size(), QSize(30, 90)) << format;
        EXPECT_EQ(decodePreview(fileOf(plainPicture({4000, 2}), format), bounds).size(), QSize(120, 1)) << format;
    }
}

TEST(PreviewDecoderTest, SmallPicturesStayAsTheyAre)
{
    for (const char *format : {"png", "jpeg"}) {
        EXPECT_EQ(decodePreview(fileOf(plainPicture({20, 10}), format), bounds).size(), QSize(20, 10)) << format;
    }
}

TEST(PreviewDecoderTest, ColorsAndTransparencyArrive)
{
    const QImage opaque = decodePreview(fileOf(plainPicture({300, 300}, QColor(12, 200, 90)), "png"), bounds);
    EXPECT_EQ(opaque.pixelColor(40, 40), QColor(12, 200, 90));
    EXPECT_EQ(opaque.format(), QImage::Format_RGB32);
    const QImage clear =
        decodePreview(fileOf(plainPicture({300, 300}, QColor(255, 0, 0, 128), QImage::Format_ARGB32), "png"), bounds);
    EXPECT_EQ(clear.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(clear.pixelColor(40, 40).alpha(), 128);
    const QImage lossy = decodePreview(fileOf(plainPicture({300, 300}, QColor(12, 200, 90)), "jpeg"), bounds);
    EXPECT_NEAR(lossy.pixelColor(40, 40).green(), 200, 6);
}

TEST(PreviewDecoderTest, APictureFromACameraIsUpright)
{
    // Orientation 6: the right side of what is seen is the top of what is stored.
    QByteArray bytes = fileOf(twoColors({400, 200}), "jpeg");
    const QByteArray exif("\xff\xe1\x00\x22"
                          "Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0",
                          36);
    bytes.insert(2, exif);
    const QImage picture = decodePreview(bytes, bounds);
    ASSERT_EQ(picture.size(), QSize(45, 90));
    EXPECT_GT(picture.pixelColor(40, 45).red(), 200);
    EXPECT_GT(picture.pixelColor(4, 45).blue(), 200);
}

TEST(PreviewDecoderTest, WhatIsNeitherPngNorJpegIsNoPicture)
{
    EXPECT_TRUE(decodePreview({}, bounds).isNull());
    EXPECT_TRUE(decodePreview("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>", bounds).isNull());
    EXPECT_TRUE(decodePreview("<html>Not found</html>", bounds).isNull());
    for (const char *format : {"bmp", "ppm", "xpm"}) {
        const QByteArray bytes = fileOf(plainPicture({20, 20}), format);
        ASSERT_FALSE(bytes.isEmpty()) << format;
        EXPECT_TRUE(decodePreview(bytes, bounds).isNull()) << format;
    }
}

TEST(PreviewDecoderTest, NothingThatIsCutShortIsAPicture)
{
    for (const char *format : {"png", "jpeg"}) {
        const QByteArray whole = fileOf(twoColors({300, 200}), format);
        ASSERT_FALSE(decodePreview(whole, bounds).isNull());
        for (qsizetype length = 0; length < whole.size() - 2; length += 1 + whole.size() / 60) {
            EXPECT_TRUE(decodePreview(whole.first(length), bounds).isNull()) << format << ' ' << length;
        }
    }
}

TEST(PreviewDecoderTest, ClaimsOfHugeSizesAreNotBelieved)
{
    for (const auto &[width, height] : {std::pair{8193u, 10u}, {10u, 8193u}, {4097u, 4097u}, {0x7fffffffu, 1u}}) {
        const QByteArray png =
            pngFile({headerChunk({.width = width, .height = height}), pixelChunk("x"), {"IEND", {}}});
        EXPECT_TRUE(decodePreview(png, bounds).isNull()) << width << " x " << height;
    }
    QByteArray jpeg = fileOf(plainPicture({64, 64}), "jpeg");
    const qsizetype frame = jpeg.indexOf(QByteArrayView("\xff\xc0", 2));
    ASSERT_GT(frame, 0);
    jpeg.replace(frame + 5, 4, QByteArrayView("\xfd\xe8\xfd\xe8", 4));
    EXPECT_TRUE(decodePreview(jpeg, bounds).isNull());
}

TEST(PreviewDecoderTest, AFileThatMakesWorkForMinutesIsRefused)
{
    // Each scan of a progressive picture goes over all its pixels.
    const QByteArray whole = fileOf(plainPicture({64, 64}), "jpeg");
    QByteArray many = whole.chopped(2);
    for (int scan = 0; scan < 1000; ++scan) {
        many += QByteArrayView("\xff\xda\x00\x08\x01\x01\x00\x00\x3f\x00", 10);
    }
    many += QByteArrayView("\xff\xd9", 2);
    EXPECT_TRUE(decodePreview(many, bounds).isNull());
}

TEST(PreviewDecoderTest, LongerFilesThanAreDownloadedAreNotRead)
{
    QByteArray bytes = fileOf(plainPicture({64, 64}), "png");
    EXPECT_FALSE(decodePreview(bytes, bounds).isNull());
    bytes.append(QByteArray(static_cast<qsizetype>(maximumPreviewBytes), 'x'));
    EXPECT_TRUE(decodePreview(bytes, bounds).isNull());
}

TEST(PreviewDecoderTest, NoRoomNoPicture)
{
    EXPECT_TRUE(decodePreview(fileOf(plainPicture({64, 64}), "png"), {0, 40}).isNull());
}

} // namespace
} // namespace lumenfold::test
