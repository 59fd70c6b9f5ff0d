#include "platform/screens/ScreenSpace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace lumenfold {

void PrintTo(const Rect &rect, std::ostream *out)
{
    *out << "(" << rect.x << ", " << rect.y << ", " << rect.width << " x " << rect.height << ")";
}

void PrintTo(const Point &point, std::ostream *out)
{
    *out << "(" << point.x << ", " << point.y << ")";
}

namespace {

ScreenGeometry screen(DisplayID id, const QRect &native, double scale = 1)
{
    return {.displayID = id,
            .native = native,
            .qt = QRect(native.topLeft(), (QSizeF(native.size()) / scale).toSize()),
            .scale = scale};
}

Rect frameOf(const ScreenSpace &space, DisplayID id)
{
    return space.screen(id)->frame;
}

bool overlap(const Rect &a, const Rect &b)
{
    return a.insetBy(1e-6).intersects(b);
}

void expectNear(const Rect &actual, const Rect &expected)
{
    EXPECT_NEAR(actual.x, expected.x, 1e-9);
    EXPECT_NEAR(actual.y, expected.y, 1e-9);
    EXPECT_NEAR(actual.width, expected.width, 1e-9);
    EXPECT_NEAR(actual.height, expected.height, 1e-9);
}

TEST(ScreenSpace, HasTheMainScreensLowerLeftCornerAsItsOrigin)
{
    const ScreenSpace space({screen(1, QRect(0, 0, 1920, 1080))});
    EXPECT_EQ(frameOf(space, 1), (Rect{0, 0, 1920, 1080}));
    EXPECT_EQ(space.fromNative(QRectF(0, 0, 100, 50)), (Rect{0, 1030, 100, 50}));
    EXPECT_EQ(space.fromNative(QRectF(1820, 1030, 100, 50)), (Rect{1820, 0, 100, 50}));
    EXPECT_EQ(space.toNative(Rect{0, 0, 10, 20}), QRectF(0, 1060, 10, 20));
}

TEST(ScreenSpace, CountsFromTheMainScreenWhereverItStands)
{
    const ScreenSpace space({screen(1, QRect(1280, 300, 1920, 1080)), screen(2, QRect(0, 0, 1280, 1024))});
    EXPECT_EQ(frameOf(space, 1), (Rect{0, 0, 1920, 1080}));
    // 300 pixels higher at the top: its top edge is at 1380, its height 1024.
    EXPECT_EQ(frameOf(space, 2), (Rect{-1280, 356, 1280, 1024}));
    EXPECT_EQ(space.fromNative(QRectF(0, 0, 10, 10)), (Rect{-1280, 1370, 10, 10}));
    EXPECT_EQ(space.toNative(Rect{-1280, 356, 1, 1}), QRectF(0, 1023, 1, 1));
}

TEST(ScreenSpace, PlacesScreensAboveAndBelow)
{
    const ScreenSpace space({screen(1, QRect(100, 1200, 1920, 1080)), screen(2, QRect(0, 0, 1600, 1200)),
                             screen(3, QRect(300, 2280, 1024, 768))});
    EXPECT_EQ(frameOf(space, 2), (Rect{-100, 1080, 1600, 1200}));
    EXPECT_EQ(frameOf(space, 3), (Rect{200, -768, 1024, 768}));
}

TEST(ScreenSpace, DividesByTheScale)
{
    const ScreenSpace space({screen(1, QRect(0, 0, 3840, 2160), 2)});
    EXPECT_EQ(frameOf(space, 1), (Rect{0, 0, 1920, 1080}));
    EXPECT_EQ(space.fromNative(QRectF(10, 20, 201, 101)), (Rect{5, 1019.5, 100.5, 50.5}));
    EXPECT_EQ(space.toNative(Rect{5, 1019.5, 100.5, 50.5}), QRectF(10, 20, 201, 101));
    EXPECT_EQ(space.fromQt(QRectF(5, 10, 100, 50)), (Rect{5, 1020, 100, 50}));
}

TEST(ScreenSpace, KeepsAnOddPixelThatTheToolkitRoundsAway)
{
    const ScreenSpace space({screen(1, QRect(0, 0, 1367, 769), 2)});
    EXPECT_EQ(frameOf(space, 1), (Rect{0, 0, 683.5, 384.5}));
    EXPECT_EQ(space.toNative(Rect{683, 0, 0.5, 0.5}), QRectF(1366, 768, 1, 1));
}

TEST(ScreenSpace, LetsAScreenOfAnotherScaleTouchOnTheLeft)
{
    // Main at scale 1 with a screen of scale 2 left of it: 3840 pixels are 1920 points.
    const ScreenSpace space({screen(1, QRect(3840, 0, 1920, 1080)), screen(2, QRect(0, 0, 3840, 2160), 2)});
    EXPECT_EQ(frameOf(space, 1), (Rect{0, 0, 1920, 1080}));
    EXPECT_EQ(frameOf(space, 2), (Rect{-1920, 0, 1920, 1080}));
    EXPECT_EQ(space.fromNative(QRectF(3838, 2158, 2, 2)), (Rect{-1, 0, 1, 1}));
    EXPECT_EQ(space.fromNative(QRectF(3840, 1079, 1, 1)), (Rect{0, 0, 1, 1}));
}

TEST(ScreenSpace, LetsAScreenOfAnotherScaleTouchOnTheRight)
{
    const ScreenSpace space({screen(1, QRect(0, 0, 3840, 2160), 2), screen(2, QRect(3840, 600, 1280, 1024))});
    // 600 pixels down the main screen's edge are 300 of its points.
    EXPECT_EQ(frameOf(space, 2), (Rect{1920, 1080 - 300 - 1024, 1280, 1024}));
}

TEST(ScreenSpace, LetsAScreenOfAnotherScaleTouchAboveAndBelow)
{
    const ScreenSpace space({screen(1, QRect(0, 1024, 3840, 2160), 2), screen(2, QRect(1280, 0, 1280, 1024)),
                             screen(3, QRect(-200, 3184, 800, 600))});
    EXPECT_EQ(frameOf(space, 2), (Rect{640, 1080, 1280, 1024}));
    // It begins 200 of its own pixels left of the main screen.
    EXPECT_EQ(frameOf(space, 3), (Rect{-200, -600, 800, 600}));
}

TEST(ScreenSpace, FollowsNeighboursOfNeighbours)
{
    // Main in the middle at scale 2, a screen at scale 1 right of it, and another one right of that.
    const ScreenSpace space({screen(1, QRect(1000, 0, 2000, 1000), 2), screen(2, QRect(4000, 0, 1000, 1000)),
                             screen(3, QRect(3000, 0, 1000, 1000)), screen(4, QRect(0, 0, 1000, 1000))});
    EXPECT_EQ(frameOf(space, 3), (Rect{1000, -500, 1000, 1000}));
    EXPECT_EQ(frameOf(space, 2), (Rect{2000, -500, 1000, 1000}));
    EXPECT_EQ(frameOf(space, 4), (Rect{-1000, -500, 1000, 1000}));
}

TEST(ScreenSpace, NeverLetsScreensOverlapThatDoNotInPixels)
{
    // Right of and below a main screen of scale 2: by their own sizes they would reach into each other.
    const std::vector<ScreenGeometry> screens{screen(1, QRect(0, 0, 3840, 2160), 2),
                                              screen(2, QRect(3840, 0, 1920, 2160)),
                                              screen(3, QRect(0, 2160, 3840, 1080))};
    const ScreenSpace space(screens);
    EXPECT_EQ(frameOf(space, 2), (Rect{1920, -1080, 1920, 2160}));
    for (const auto &one : space.screens()) {
        for (const auto &other : space.screens()) {
            EXPECT_TRUE(one.displayID == other.displayID || !overlap(one.frame, other.frame))
                << one.displayID << " and " << other.displayID;
        }
    }
}

TEST(ScreenSpace, TouchesAlsoWhereDivisionLeavesFractions)
{
    const ScreenSpace space({screen(1, QRect(0, 0, 1000, 1000), 3), screen(2, QRect(1000, 0, 1000, 1000), 3),
                             screen(3, QRect(2000, 0, 1000, 1000), 3), screen(4, QRect(0, 1000, 3000, 1000), 3)});
    EXPECT_NEAR(frameOf(space, 2).x, 1000.0 / 3, 1e-9);
    EXPECT_NEAR(frameOf(space, 3).x, 2000.0 / 3, 1e-9);
    EXPECT_NEAR(frameOf(space, 4).maxY(), 0, 1e-9);
}

TEST(ScreenSpace, KeepsTheGapBetweenScreensThatDoNotTouch)
{
    const ScreenSpace space({screen(1, QRect(0, 0, 1000, 1000)), screen(2, QRect(1500, 0, 1000, 1000))});
    EXPECT_EQ(frameOf(space, 2), (Rect{1500, 0, 1000, 1000}));
}

TEST(ScreenSpace, LaysMirroredScreensOverEachOther)
{
    const ScreenSpace space({screen(1, QRect(0, 0, 1000, 1000)), screen(2, QRect(0, 0, 1000, 1000))});
    EXPECT_EQ(frameOf(space, 2), (Rect{0, 0, 1000, 1000}));
}

TEST(ScreenSpace, ConvertsByTheScreenThatHoldsMostOfARectangle)
{
    const ScreenSpace space({screen(1, QRect(0, 0, 2000, 2000), 2), screen(2, QRect(2000, 0, 1000, 1000))});
    // 90 of its 100 pixels are on the second screen.
    EXPECT_EQ(space.fromNative(QRectF(1990, 0, 100, 10)), (Rect{990, 990, 100, 10}));
    // It sticks out of the first one.
    EXPECT_EQ(space.fromNative(QRectF(-100, -100, 400, 400)), (Rect{-50, 850, 200, 200}));
}

TEST(ScreenSpace, ConvertsWhatIsOnNoScreenByTheNearest)
{
    const ScreenSpace space({screen(1, QRect(0, 0, 2000, 2000), 2), screen(2, QRect(2000, 0, 1000, 1000))});
    EXPECT_EQ(space.screenOfNative(QRectF(5000, 0, 10, 10))->displayID, 2U);
    EXPECT_EQ(space.screenOfNative(QRectF(-500, 1900, 10, 10))->displayID, 1U);
    EXPECT_EQ(space.screenOf(Rect{-30, 500, 10, 10})->displayID, 1U);
}

TEST(ScreenSpace, GivesPointsOnACommonEdgeToOneScreen)
{
    const ScreenSpace space({screen(1, QRect(0, 0, 2000, 2000), 2), screen(2, QRect(2000, 0, 1000, 1000)),
                             screen(3, QRect(0, 2000, 2000, 1000), 2)});
    EXPECT_EQ(space.fromNative(QPointF(2000, 500)), (Point{1000, 500}));
    EXPECT_EQ(space.fromNative(QPointF(1999, 500)), (Point{999.5, 750}));
    EXPECT_EQ(space.toNative(Point{1000, 500}), QPointF(2000, 500));
    // The upper edge of a screen belongs to it: the pixel row under it is its first.
    EXPECT_EQ(space.fromNative(QPointF(0, 2000)), (Point{0, 0}));
    EXPECT_EQ(space.toNative(Point{10, 0}), QPointF(20, 2000));
    const auto upperLeft = space.fromNative(QPointF(0, 0));
    EXPECT_TRUE(frameOf(space, 1).contains(upperLeft));
}

TEST(ScreenSpace, RoundsToWholePixels)
{
    const ScreenSpace space({screen(1, QRect(0, 0, 1000, 1000), 2)});
    EXPECT_EQ(space.toNativePixels(Rect{10.2, 10.2, 5.1, 5.1}), QRect(20, 969, 11, 11));
    EXPECT_EQ(space.toNativePixels(Rect{10, 10, 0.01, 0.01}), QRect(20, 980, 1, 1));
}

TEST(ScreenSpace, ConvertsToTheToolkitAndBackOnEachScreen)
{
    const ScreenSpace space({screen(1, QRect(1280, 0, 3840, 2160), 2), screen(2, QRect(0, 200, 1280, 1024)),
                             screen(3, QRect(5120, 0, 1920, 1080))});
    for (const auto &placed : space.screens()) {
        const Rect inside = placed.frame.insetBy(7.25);
        expectNear(space.fromQt(space.toQt(inside)), inside);
        expectNear(space.fromNative(space.toNative(inside)), inside);
        EXPECT_EQ(space.toQt(placed.frame), QRectF(placed.qt)) << placed.displayID;
        EXPECT_EQ(space.toNative(placed.frame), QRectF(placed.native)) << placed.displayID;
    }
    EXPECT_EQ(space.fromQt(QPointF(1290, 10)), (Point{10, 1070}));
    EXPECT_EQ(space.toQt(Point{10, 1070}), QPointF(1290, 10));
}

TEST(ScreenSpace, ConvertsFromWhereTheToolkitBelievesAScreenToBe)
{
    // The screen of scale 2 moved from (1000, 300) to (1000, 0), and the toolkit still counts from its old place.
    ScreenGeometry moved = screen(2, QRect(1000, 0, 2000, 2000), 2);
    moved.qt.moveTo(1000, 300);
    const ScreenSpace space({screen(1, QRect(0, 0, 1000, 1000)), moved});
    // The toolkit turns y = 250 into 300 + (250 - 300) * 2 = 200 pixels.
    EXPECT_EQ(space.fromQt(QRectF(1010, 250, 10, 10), *space.screen(2)), (Rect{1010, 890, 10, 10}));
    EXPECT_EQ(space.toQt(Rect{1010, 890, 10, 10}, *space.screen(2)), QRectF(1010, 250, 10, 10));
}

TEST(ScreenSpace, TellsNothingAboutUnknownScreens)
{
    const ScreenSpace space({screen(1, QRect(0, 0, 1000, 1000))});
    EXPECT_EQ(space.screen(2), nullptr);
    const ScreenSpace empty;
    EXPECT_EQ(empty.screenOf(Rect{0, 0, 1, 1}), nullptr);
    EXPECT_EQ(empty.fromNative(QRectF(1, 2, 3, 4)), (Rect{1, -6, 3, 4}));
}

} // namespace
} // namespace lumenfold
