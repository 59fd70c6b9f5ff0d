#include "platform/statusitem/StatusIconPainter.h"

#include "app/menubar/MenuBarImages.h"
#include "platform/statusitem/notifier/NotifierTypes.h"

#include <QPainter>
#include <QSvgRenderer>

#include <gtest/gtest.h>

#include <array>

namespace lumenfold::test {
namespace {

constexpr std::array everySize{16, 18, 20, 22, 24, 28, 32, 36, 44, 48, 64, 96, 128};
const QColor orange(255, 149, 0);

StatusIcon icon(bool hasBadge)
{
    return {.image = menuBarImage(), .hasBadge = hasBadge};
}

TEST(StatusIconPainter, TheBadgeOfTwentyTwoPointsHasItsMeasures)
{
    EXPECT_EQ(badgePlacement(22), (BadgePlacement{.circle = {12, 3, 7, 7}, .ringWidth = 1}));
    EXPECT_EQ(badgePlacement(44), (BadgePlacement{.circle = {24, 6, 14, 14}, .ringWidth = 2}));
}

TEST(StatusIconPainter, AtEverySizeTheBadgeIsAnOrangeDotWithABlackRing)
{
    for (const int side : everySize) {
        SCOPED_TRACE(side);
        const BadgePlacement badge = badgePlacement(side);
        const QImage picture = paintStatusIcon(icon(true), side, Qt::white);
        const QPoint middle = badge.circle.center();
        EXPECT_EQ(picture.pixelColor(middle), orange);
        // The ring, above and on the right.
        EXPECT_LT(picture.pixelColor(middle.x(), badge.circle.top()).green(), 60);
        EXPECT_LT(picture.pixelColor(badge.circle.right(), middle.y()).green(), 60);
        EXPECT_GT(picture.pixelColor(middle.x(), badge.circle.top()).alpha(), 200);
        EXPECT_GE(badge.circle.width() - 2 * badge.ringWidth, 3);
        EXPECT_NEAR(side - badge.circle.right() - 1, side * 3 / 22.0, 0.51);
        EXPECT_NEAR(badge.circle.width(), side * 7 / 22.0, 0.51);
    }
}

TEST(StatusIconPainter, WithoutTheBadgeThereIsNothingButTheTemplatesColour)
{
    const QColor color(10, 200, 30);
    for (const int side : everySize) {
        const QImage picture = paintStatusIcon(icon(false), side, color).convertToFormat(QImage::Format_ARGB32);
        int painted = 0;
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                const QColor pixel = picture.pixelColor(x, y);
                if (pixel.alpha() == 255) {
                    EXPECT_EQ(pixel, color);
                }
                painted += pixel.alpha() >= 128 ? 1 : 0;
            }
        }
        // Neither empty nor a block.
        EXPECT_GT(painted, side * side / 20) << side;
        EXPECT_LT(painted, side * side * 2 / 3) << side;
    }
}

TEST(StatusIconPainter, APictureThatIsNoTemplateKeepsItsColours)
{
    const StatusIcon red{.image = {.drawing = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 2 2\">"
                                              "<path d=\"M0 0H2V2H0Z\" fill=\"#f00\"/></svg>",
                                   .isTemplate = false,
                                   .accessibilityDescription = {}},
                         .hasBadge = false};
    EXPECT_EQ(paintStatusIcon(red, 8, Qt::blue).pixelColor(4, 4), QColor(Qt::red));
}

TEST(StatusIconPainter, WithoutADrawingItIsTransparent)
{
    EXPECT_EQ(paintStatusIcon({}, 16, Qt::white).pixelColor(8, 8).alpha(), 0);
    EXPECT_TRUE(symbolicDrawing({}, Qt::white).isEmpty());
}

TEST(StatusIconPainter, TheDrawingForPanelsShowsTheSameAsThePixels)
{
    for (const bool hasBadge : {false, true}) {
        const QByteArray drawing = symbolicDrawing(icon(hasBadge), Qt::white);
        QSvgRenderer renderer(drawing);
        ASSERT_TRUE(renderer.isValid()) << drawing.constData();
        QImage picture(44, 44, QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        renderer.render(&painter);
        painter.end();
        EXPECT_EQ(picture.pixelColor(31, 13) == orange, hasBadge);
        const QImage pixels = paintStatusIcon(icon(hasBadge), 44, Qt::white);
        int different = 0;
        for (int y = 0; y < 44; ++y) {
            for (int x = 0; x < 44; ++x) {
                const QColor a = picture.pixelColor(x, y);
                const QColor b = pixels.pixelColor(x, y);
                different += std::abs(a.alpha() - b.alpha()) > 40 || std::abs(a.green() - b.green()) > 120 ? 1 : 0;
            }
        }
        EXPECT_LT(different, 12);
    }
}

TEST(StatusIconPainter, PanelsFindWhatToColourAndLeaveTheBadge)
{
    const QByteArray drawing = symbolicDrawing(icon(true), QColor(1, 2, 3));
    EXPECT_FALSE(drawing.contains("fill=\"#000\""));
    EXPECT_TRUE(drawing.contains("class=\"ColorScheme-Text\""));
    EXPECT_TRUE(drawing.contains("#010203"));
    EXPECT_EQ(drawing.count("<ellipse"), 2);
    EXPECT_FALSE(drawing.contains("<circle"));
}

TEST(StatusIconPainter, OverTheBusGoPlainPixelsOfEveryUsualSize)
{
    const NotifierPixmaps pixmaps = notifierPixmaps(icon(true), QColor(0x11, 0x22, 0x33));
    QList<int> sides;
    for (const NotifierPixmap &pixmap : pixmaps) {
        sides.append(pixmap.width);
        EXPECT_EQ(pixmap.height, pixmap.width);
        ASSERT_EQ(pixmap.pixels.size(), pixmap.width * pixmap.height * 4);
        // Alpha, red, green, blue, in that order of bytes.
        const QPoint middle = badgePlacement(pixmap.width).circle.center();
        EXPECT_EQ(pixmap.pixels.mid((middle.y() * pixmap.width + middle.x()) * 4, 4),
                  QByteArray("\xff\xff\x95\x00", 4));
        EXPECT_TRUE(pixmap.pixels.contains(QByteArray("\xff\x11\x22\x33", 4)));
    }
    EXPECT_EQ(sides, QList<int>({16, 22, 24, 32, 44, 48, 64}));
}

} // namespace
} // namespace lumenfold::test
