#include "cards/CardPicture.h"

#include <QPainter>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

TEST(CardPictureTest, aPictureOfTheCardsProportionsIsScaledToTheCard)
{
    EXPECT_EQ(fillingSize({1600, 1200}, {160, 120}), (PixelSize{160, 120}));
    EXPECT_EQ(fillingSize({80, 60}, {160, 120}), (PixelSize{160, 120}));
}

TEST(CardPictureTest, aWidePictureIsScaledToTheCardsHeightAndAHighOneToItsWidth)
{
    EXPECT_EQ(fillingSize({3840, 1080}, {160, 120}), (PixelSize{427, 120}));
    EXPECT_EQ(fillingSize({1080, 3840}, {160, 120}), (PixelSize{160, 569}));
}

TEST(CardPictureTest, roundingLeavesNoEdgeOfTheCardBare)
{
    // A third of a pixel less would do for the width.
    const PixelSize size = fillingSize({1001, 1000}, {333, 333});
    EXPECT_GE(size.width, 333);
    EXPECT_GE(size.height, 333);
}

TEST(CardPictureTest, nothingIsFilledByNothing)
{
    EXPECT_TRUE(fillingSize({0, 0}, {160, 120}).isEmpty());
    EXPECT_TRUE(fillingSize({1600, 1200}, {0, 120}).isEmpty());
}

TEST(CardPictureTest, theMiddleOfThePictureIsSeen)
{
    EXPECT_EQ(visiblePart({160, 120}, {160, 120}), QRectF(0, 0, 160, 120));
    EXPECT_EQ(visiblePart({480, 120}, {160, 120}), QRectF(160, 0, 160, 120));
    EXPECT_EQ(visiblePart({160, 360}, {160, 120}), QRectF(0, 120, 160, 120));
    EXPECT_EQ(visiblePart({80, 60}, {160, 120}), QRectF(0, 0, 80, 60));
}

/// The left half red, the right half blue, a black line along the upper edge and a green one along the lower.
QImage halves(QSize size)
{
    QImage pixels(size, QImage::Format_RGB32);
    pixels.fill(Qt::red);
    QPainter painter(&pixels);
    painter.fillRect(size.width() / 2, 0, size.width(), size.height(), Qt::blue);
    const int line = size.height() / 6;
    painter.fillRect(0, 0, size.width(), line, Qt::black);
    painter.fillRect(0, size.height() - line, size.width(), line, Qt::green);
    return pixels;
}

/// The card as it is painted at that many device pixels per point.
QImage painted(CardPicture &picture, QSize points, double scale, CardPicture::Sharpness sharpness)
{
    QImage card(points * scale, QImage::Format_ARGB32_Premultiplied);
    card.setDevicePixelRatio(scale);
    card.fill(Qt::transparent);
    QPainter painter(&card);
    picture.paint(painter, QRectF(QPointF(), points), 14, sharpness);
    return card;
}

void expectCleanEdges(const QImage &card)
{
    const int right = card.width() - 1;
    const int bottom = card.height() - 1;
    EXPECT_EQ(card.pixelColor(0, bottom / 2), QColor(Qt::red));
    EXPECT_EQ(card.pixelColor(right, bottom / 2), QColor(Qt::blue));
    EXPECT_EQ(card.pixelColor(right / 4, 0), QColor(Qt::black));
    EXPECT_EQ(card.pixelColor(right / 4, bottom), QColor(Qt::green));
    EXPECT_EQ(card.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(card.pixelColor(right, bottom).alpha(), 0);
}

TEST(CardPictureTest, aPictureSmallerThanItsCardDoesNotBleedAroundItsEdges)
{
    for (const double scale : {1.0, 2.0}) {
        CardPicture picture(Image::fromPixels(halves({8, 6})));
        expectCleanEdges(painted(picture, {160, 120}, scale, CardPicture::Sharpness::exact));
    }
}

TEST(CardPictureTest, aCopyThatIsTooLargeForAWhileDoesNotBleedAroundItsEdges)
{
    CardPicture picture(Image::fromPixels(halves({320, 240})));
    (void)painted(picture, {160, 120}, 1, CardPicture::Sharpness::exact);
    expectCleanEdges(painted(picture, {150, 112}, 1, CardPicture::Sharpness::passing));
    expectCleanEdges(painted(picture, {141, 106}, 1, CardPicture::Sharpness::passing));
}

TEST(CardPictureTest, whatIsAtHandIsSeenUntilThereIsACopy)
{
    const Image image = Image::fromPng(Image::fromPixels(halves({640, 480})).pngData().value());
    ASSERT_FALSE(image.thumbnail({120, 90}).isNull());
    CardPicture picture(image);
    expectCleanEdges(painted(picture, {160, 120}, 1, CardPicture::Sharpness::exact));
}

TEST(CardPictureTest, aPictureOfOnePixelFillsItsCard)
{
    QImage pixel(1, 1, QImage::Format_RGB32);
    pixel.fill(Qt::red);
    CardPicture picture(Image::fromPixels(pixel));
    const QImage card = painted(picture, {160, 120}, 1, CardPicture::Sharpness::exact);
    EXPECT_EQ(card.pixelColor(0, 60), QColor(Qt::red));
    EXPECT_EQ(card.pixelColor(80, 60), QColor(Qt::red));
    EXPECT_EQ(card.pixelColor(159, 60), QColor(Qt::red));
}

} // namespace
} // namespace lumenfold::test
