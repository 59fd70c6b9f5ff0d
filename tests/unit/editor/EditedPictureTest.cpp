#include "editor/bridge/EditedPicture.h"

#include "tests/support/unit/LogWatch.h"

#include <QBuffer>
#include <QImage>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

QImage gradient()
{
    QImage picture(40, 30, QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            picture.setPixel(x, y, qRgb(x * 6, y * 8, 100));
        }
    }
    return picture;
}

QByteArray encodedAs(const char *format, const QImage &picture = gradient())
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, format);
    return bytes;
}

TEST(EditedPictureTest, APngKeepsItsBytes)
{
    const QByteArray png = encodedAs("PNG");
    const Image image = readEditedPicture(png);
    EXPECT_EQ(image.pngData(), png);
    EXPECT_EQ(image.pixels().convertToFormat(QImage::Format_RGB32), gradient());
    // The card has something to show at once, and nobody keeps the pixels for it.
    EXPECT_FALSE(image.readyThumbnail().isNull());
    EXPECT_FALSE(image.holdsPixels());
}

TEST(EditedPictureTest, ALargeOneWithTransparencyIsOneToo)
{
    QImage picture = gradient().scaled(1200, 900).convertToFormat(QImage::Format_ARGB32);
    EXPECT_EQ(readEditedPicture(encodedAs("PNG", picture)).readyThumbnail().size(), QSize(480, 360));
    picture.setPixel(0, 0, qRgba(1, 2, 3, 100));
    const Image image = readEditedPicture(encodedAs("PNG", picture));
    EXPECT_TRUE(image.readyThumbnail().hasAlphaChannel());
    EXPECT_FALSE(image.holdsPixels());
    EXPECT_EQ(image.pixels(), picture);
}

TEST(EditedPictureTest, ALargeOneThatIsBrokenIsNone)
{
    const QByteArray png = encodedAs("PNG", gradient().scaled(1200, 900));
    EXPECT_FALSE(readEditedPicture(png).isNull());
    for (const qsizetype at : {png.size() / 3, png.size() / 2, png.size() - 20}) {
        QByteArray broken = png;
        broken[at] = static_cast<char>(broken[at] ^ 0x55);
        EXPECT_TRUE(readEditedPicture(broken).isNull()) << at;
    }
}

TEST(EditedPictureTest, AJpegIsAPictureToo)
{
    EXPECT_EQ(readEditedPicture(encodedAs("JPEG")).pixelSize(), (PixelSize{40, 30}));
}

TEST(EditedPictureTest, WhatIsBrokenIsNone)
{
    expectLogLine(QStringLiteral("JPEG datastream contains no image"));
    const QByteArray png = encodedAs("PNG");
    QByteArray broken = png;
    broken[broken.size() / 2] = static_cast<char>(broken[broken.size() / 2] ^ 0x55);
    for (const QByteArray &bytes :
         {QByteArray(), QByteArray("PNG"), png.left(png.size() / 2), broken, encodedAs("BMP"), QByteArray("<svg/>"),
          QByteArray("\xff\xd8\xff"), QByteArray("RIFF\0\0\0\0WEBP", 12)}) {
        EXPECT_TRUE(readEditedPicture(bytes).isNull()) << bytes.left(8).toHex().constData();
    }
}

} // namespace
} // namespace lumenfold::test
