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

QByteArray encodedAs(const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    gradient().save(&buffer, format);
    return bytes;
}

TEST(EditedPictureTest, APngKeepsItsBytes)
{
    const QByteArray png = encodedAs("PNG");
    const Image image = readEditedPicture(png);
    EXPECT_EQ(image.pngData(), png);
    EXPECT_EQ(image.pixels().convertToFormat(QImage::Format_RGB32), gradient());
    // The card need not read it again.
    EXPECT_TRUE(image.holdsPixels());
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
