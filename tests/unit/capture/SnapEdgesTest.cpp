#include "capture/areaselection/SnapEdges.h"

#include "tests/support/fakes/FakeWindowList.h"
#include "tests/unit/capture/Processes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumenfold {
namespace {

using test::FakeWindowList;
using test::otherPid;
using test::ownPid;
using ::testing::ElementsAre;

constexpr SnapEdgesOptions mainScreen{
    .screenFrame = {0, 0, 1440, 900}, .mainScreenHeight = 900, .ownProcessID = ownPid};

TEST(SnapEdges, WithoutWindowsAreTheScreensOwn)
{
    const SnapEdges edges = snapEdges({}, mainScreen);
    EXPECT_THAT(edges.snapXs, ElementsAre(0, 1440));
    EXPECT_THAT(edges.snapYs, ElementsAre(0, 900));
}

TEST(SnapEdges, TurnWindowsOverAndListThemBeforeTheScreen)
{
    const SnapEdges edges = snapEdges({FakeWindowList::ordinaryWindow(otherPid, {100, 50, 300, 200}),
                                       FakeWindowList::ordinaryWindow(otherPid, {100, 60, 10, 20})},
                                      mainScreen);
    EXPECT_THAT(edges.snapXs, ElementsAre(100, 400, 100, 110, 0, 1440));
    EXPECT_THAT(edges.snapYs, ElementsAre(650, 850, 820, 840, 0, 900));
}

TEST(SnapEdges, AreInTheCoordinatesOfTheirOwnScreen)
{
    // The second screen stands to the right of the main one, with its bottom 180 points below the main one's.
    const SnapEdges edges =
        snapEdges({FakeWindowList::ordinaryWindow(otherPid, {1540, 100, 200, 300})},
                  {.screenFrame = {1440, -180, 1920, 1080}, .mainScreenHeight = 900, .ownProcessID = ownPid});
    EXPECT_THAT(edges.snapXs, ElementsAre(100, 300, 0, 1920));
    EXPECT_THAT(edges.snapYs, ElementsAre(680, 980, 0, 1080));
}

TEST(SnapEdges, LeaveOutOwnAndFloatingWindows)
{
    const SnapEdges edges =
        snapEdges({FakeWindowList::ordinaryWindow(ownPid, {10, 10, 300, 200}),
                   {.ownerProcessID = otherPid, .layer = 25, .bounds = WindowBounds{20, 20, 300, 200}},
                   {.ownerProcessID = otherPid, .layer = -1, .bounds = WindowBounds{30, 30, 300, 200}}},
                  mainScreen);
    EXPECT_THAT(edges.snapXs, ElementsAre(0, 1440));
    EXPECT_THAT(edges.snapYs, ElementsAre(0, 900));
}

TEST(SnapEdges, TakeAWindowOfWhichOnlyTheBoundsAreKnown)
{
    const SnapEdges edges = snapEdges({{.bounds = WindowBounds{20, 30, 300, 200}}}, mainScreen);
    EXPECT_THAT(edges.snapXs, ElementsAre(20, 320, 0, 1440));
}

TEST(SnapEdges, LeaveOutWindowsWithoutBoundsOrOfOnePoint)
{
    const SnapEdges edges = snapEdges({{.ownerProcessID = otherPid, .layer = 0},
                                       FakeWindowList::ordinaryWindow(otherPid, {10, 10, 1, 200}),
                                       FakeWindowList::ordinaryWindow(otherPid, {10, 10, 200, 1}),
                                       FakeWindowList::ordinaryWindow(otherPid, {10, 10, 1.5, 1.5})},
                                      mainScreen);
    EXPECT_THAT(edges.snapXs, ElementsAre(10, 11.5, 0, 1440));
}

TEST(Snapping, AttractsBelowEightPointsOnly)
{
    const SnapEdges edges{.snapXs = {100}, .snapYs = {200}};
    EXPECT_EQ(edges.snapped({107.9, 192.1}), (Point{100, 200}));
    EXPECT_EQ(edges.snapped({108, 192}), (Point{108, 192}));
}

TEST(Snapping, TakesTheNearestEdgeForEachDirectionOfItsOwn)
{
    const SnapEdges edges{.snapXs = {100, 104}, .snapYs = {50}};
    EXPECT_EQ(edges.snapped({103, 70}), (Point{104, 70}));
    EXPECT_EQ(edges.snapped({300, 51}), (Point{300, 50}));
}

TEST(Snapping, OfEquallyNearEdgesTakesTheFirst)
{
    EXPECT_EQ((SnapEdges{.snapXs = {106, 100}, .snapYs = {}}.snapped({103, 0}).x), 106);
    EXPECT_EQ((SnapEdges{.snapXs = {100, 106}, .snapYs = {}}.snapped({103, 0}).x), 100);
}

} // namespace
} // namespace lumenfold
