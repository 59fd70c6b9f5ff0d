#include "platform/panels/PixelFrame.h"

#include <gtest/gtest.h>

namespace lumenfold {
namespace {

ScreenSpace oneScreen(double scale)
{
    return ScreenSpace({{.displayID = 1,
                         .native = QRect(0, 0, 1280, 800),
                         .qt = QRect(0, 0, static_cast<int>(1280 / scale), static_cast<int>(800 / scale)),
                         .scale = scale}});
}

TEST(PixelFrame, turnsTheSpaceOver)
{
    EXPECT_EQ(pixelFrame(oneScreen(1), {24, 24, 220, 165}), QRect(24, 611, 220, 165));
    EXPECT_EQ(pixelFrame(oneScreen(2), {24, 24, 220, 165}), QRect(48, 422, 440, 330));
}

TEST(PixelFrame, halfPointsArePixelsAtScaleTwo)
{
    EXPECT_EQ(pixelFrame(oneScreen(2), {10.5, 20.5, 100.5, 50.5}), QRect(21, 658, 201, 101));
}

TEST(PixelFrame, panelsThatTouchInPointsTouchInPixels)
{
    const ScreenSpace space = oneScreen(1);
    for (double x = -3; x < 3; x += 0.1) {
        const QRect left = pixelFrame(space, {x, 100, 33.3, 20});
        const QRect right = pixelFrame(space, {x + 33.3, 100, 12.7, 20});
        EXPECT_EQ(left.x() + left.width(), right.x()) << x;
    }
}

TEST(PixelFrame, aHalfPixelRoundsTheSameWayOnBothSidesOfZero)
{
    const ScreenSpace space = oneScreen(1);
    EXPECT_EQ(pixelFrame(space, {-0.5, 0, 10, 10}).width(), 10);
    EXPECT_EQ(pixelFrame(space, {0.5, 0, 10, 10}).width(), 10);
    EXPECT_EQ(pixelFrame(space, {-10.5, 0, 10, 10}).x(), -10);
}

TEST(PixelFrame, aMovingPanelKeepsTheSizeOfItsDestination)
{
    const ScreenSpace space = oneScreen(1);
    const Rect destination{40.2, 100, 213.4, 160.05};
    const QSize atRest = pixelFrame(space, destination).size();
    for (double x = 0; x < 40; x += 0.37) {
        EXPECT_EQ(pixelFrame(space, {x, 100 - x, 213.4, 160.05}, destination).size(), atRest) << x;
    }
}

TEST(PixelFrame, isNeverEmptyAndNeverOutOfTheServersRange)
{
    EXPECT_EQ(pixelFrame(ScreenSpace(), {}).size(), QSize(1, 1));
    const QRect far = pixelFrame(oneScreen(1), {1e9, -1e9, 10, 10});
    EXPECT_LE(far.x(), 32767);
    EXPECT_LE(far.y(), 32767);
}

} // namespace
} // namespace lumenfold
