#include "platform/screens/DisplayIdentity.h"

#include <gtest/gtest.h>

#include <set>

namespace lumenfold {
namespace {

using namespace Qt::StringLiterals;

const DisplayIdentity office{.name = u"DP-1"_s, .manufacturer = u"Acme"_s, .model = u"Wide"_s, .serialNumber = u"7"_s};
const DisplayIdentity plain{.name = u"HDMI-1"_s};

TEST(DisplayIdentity, StaysTheSameInEveryRun)
{
    EXPECT_EQ(displayIDsFor({plain}), displayIDsFor({plain}));
    // The number itself: a last area that was stored by an earlier version must find its screen.
    EXPECT_EQ(displayIDsFor({plain}).front(), 963360591U);
}

TEST(DisplayIdentity, FollowsAMonitorWithASerialNumberToAnotherOutput)
{
    DisplayIdentity moved = office;
    moved.name = u"DP-2"_s;
    EXPECT_EQ(displayIDsFor({office}), displayIDsFor({moved}));
}

TEST(DisplayIdentity, TellsOutputsApartWithoutASerialNumber)
{
    DisplayIdentity other = plain;
    other.name = u"HDMI-2"_s;
    EXPECT_NE(displayIDsFor({plain}), displayIDsFor({other}));
}

TEST(DisplayIdentity, GivesEveryScreenItsOwnAndNoneZero)
{
    const auto ids = displayIDsFor({office, office, plain, {}, {}, {}});
    const std::set<DisplayID> distinct(ids.begin(), ids.end());
    EXPECT_EQ(distinct.size(), 6U);
    EXPECT_FALSE(distinct.contains(0));
}

TEST(DisplayIdentity, DoesNotDependOnOtherScreens)
{
    EXPECT_EQ(displayIDsFor({office, plain}).back(), displayIDsFor({plain}).front());
}

} // namespace
} // namespace lumenfold
