#include "platform/screens/Struts.h"

#include <gtest/gtest.h>

namespace lumenfold {
namespace {

/// Two screens side by side, the second 300 pixels lower, on a root that holds both.
constexpr QRect left(0, 0, 1920, 1080);
constexpr QRect right(1920, 300, 1280, 1024);
constexpr QSize root(3200, 1324);

Dock dock(const QRect &window, const std::vector<std::uint32_t> &items)
{
    return {window, strutFromItems(items).value()};
}

TEST(Struts, ReadsBothProperties)
{
    const auto partial = strutFromItems({0, 0, 30, 0, 0, 0, 0, 0, 100, 500, 0, 0});
    ASSERT_TRUE(partial);
    EXPECT_EQ(partial->top, (Strut::Edge{30, 100, 500}));
    EXPECT_EQ(partial->left.depth, 0);
    const auto simple = strutFromItems({0, 40, 0, 0});
    ASSERT_TRUE(simple);
    EXPECT_EQ(simple->right.depth, 40);
    EXPECT_GE(simple->right.end, 100'000);
}

TEST(Struts, IgnoresWhatReservesNothingOrHasAnotherLength)
{
    EXPECT_FALSE(strutFromItems({}));
    EXPECT_FALSE(strutFromItems({0, 0, 0, 0}));
    EXPECT_FALSE(strutFromItems({1, 2, 3}));
    EXPECT_FALSE(strutFromItems({0, 0, 30, 0, 0, 0, 0, 0, 100}));
}

TEST(Struts, LeavesTheScreenWholeWithoutDocks)
{
    EXPECT_EQ(freeOfDocks(right, root, {}), right);
}

TEST(Struts, TakesTheDocksOfAllEdgesAway)
{
    const std::vector<Dock> docks{
        dock(QRect(0, 0, 1920, 30), {0, 0, 30, 0, 0, 0, 0, 0, 0, 1919, 0, 0}),
        dock(QRect(0, 30, 64, 1050), {64, 0, 0, 0, 30, 1079, 0, 0, 0, 0, 0, 0}),
    };
    EXPECT_EQ(freeOfDocks(left, root, docks), QRect(64, 30, 1856, 1050));
}

TEST(Struts, CountsFromTheRootsEdges)
{
    // A bar at the lower edge of the left screen reserves down to the root's edge.
    const std::vector<Dock> bar{dock(QRect(0, 1040, 1920, 40), {0, 0, 0, 284, 0, 0, 0, 0, 0, 0, 0, 1919})};
    EXPECT_EQ(freeOfDocks(left, root, bar), QRect(0, 0, 1920, 1040));
    EXPECT_EQ(freeOfDocks(right, root, bar), right);
}

TEST(Struts, CountsOnlyOnScreensThatTheDockTouches)
{
    // The old property has no spans: read alone it would take the right screen's lower part too.
    const std::vector<Dock> bar{dock(QRect(0, 1040, 1920, 40), {0, 0, 0, 284})};
    EXPECT_EQ(freeOfDocks(left, root, bar), QRect(0, 0, 1920, 1040));
    EXPECT_EQ(freeOfDocks(right, root, bar), right);
}

TEST(Struts, CountsADockBetweenTwoScreens)
{
    const std::vector<Dock> bar{dock(QRect(1920, 300, 48, 1024), {1968, 0, 0, 0, 300, 1323, 0, 0, 0, 0, 0, 0})};
    EXPECT_EQ(freeOfDocks(right, root, bar), QRect(1968, 300, 1232, 1024));
    EXPECT_EQ(freeOfDocks(left, root, bar), left);
}

TEST(Struts, IgnoresADockThatWouldLeaveNothing)
{
    const std::vector<Dock> docks{dock(QRect(0, 0, 10, 10), {0, 0, 5000, 0}),
                                  dock(QRect(0, 0, 1920, 30), {0, 0, 30, 0}),
                                  dock(QRect(0, 0, 10, 10), {4294967295U, 0, 0, 0})};
    EXPECT_EQ(freeOfDocks(left, root, docks), QRect(0, 30, 1920, 1050));
}

} // namespace
} // namespace lumenfold
