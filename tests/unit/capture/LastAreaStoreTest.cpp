#include "capture/LastAreaStore.h"

#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeUserDefaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace lumenfold {
namespace {

using test::FakeScreens;
using test::FakeUserDefaults;

TEST(LastAreaStore, HasTheKeysThatAreOnUsersDisks)
{
    EXPECT_EQ(LastAreaStore::lastAreaRectKey, u"LumenFold.lastAreaRect");
    EXPECT_EQ(LastAreaStore::lastAreaDisplayKey, u"LumenFold.lastAreaDisplayID");
}

TEST(LastAreaStore, BeginsEmpty)
{
    FakeUserDefaults defaults;
    EXPECT_EQ(LastAreaStore(defaults).load(), LastArea{});
}

TEST(LastAreaStore, WritesFourNumbersThenTheDisplay)
{
    FakeUserDefaults defaults;
    LastAreaStore(defaults).save({-10.5, 20, 300, 40}, 4294967295U);
    EXPECT_EQ(defaults.numbers(LastAreaStore::lastAreaRectKey), (std::vector<double>{-10.5, 20, 300, 40}));
    EXPECT_EQ(defaults.integer(LastAreaStore::lastAreaDisplayKey), 4294967295LL);
    EXPECT_EQ(defaults.writes(), (QStringList{LastAreaStore::lastAreaRectKey, LastAreaStore::lastAreaDisplayKey}));
}

TEST(LastAreaStore, ReadsWhatItWrote)
{
    FakeUserDefaults defaults;
    LastAreaStore store(defaults);
    store.save({-10.5, 20, 300, 40}, 4294967295U);
    EXPECT_EQ(store.load(), (LastArea{.rect = Rect{-10.5, 20, 300, 40}, .displayID = 4294967295U}));
}

TEST(LastAreaStore, KeepsARectangleOfWhichTheDisplayIsUnknown)
{
    FakeUserDefaults defaults;
    defaults.setNumbers(LastAreaStore::lastAreaRectKey, {1, 2, 3, 4});
    defaults.setInteger(LastAreaStore::lastAreaDisplayKey, 0);
    EXPECT_EQ(LastAreaStore(defaults).load(), (LastArea{.rect = Rect{1, 2, 3, 4}, .displayID = std::nullopt}));
}

class LastAreaStoreBadRect : public ::testing::TestWithParam<FakeUserDefaults::Value> {};

TEST_P(LastAreaStoreBadRect, IsNone)
{
    FakeUserDefaults defaults;
    defaults.setRaw(LastAreaStore::lastAreaRectKey, GetParam());
    defaults.setInteger(LastAreaStore::lastAreaDisplayKey, 7);
    EXPECT_EQ(LastAreaStore(defaults).load(), (LastArea{.rect = std::nullopt, .displayID = 7U}));
}

using Numbers = std::vector<double>;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

INSTANTIATE_TEST_SUITE_P(OfEveryShape, LastAreaStoreBadRect,
                         ::testing::Values(Numbers{}, Numbers{1, 2, 3}, Numbers{1, 2, 3, 4, 5}, Numbers{nan, 2, 3, 4},
                                           Numbers{1, nan, 3, 4}, Numbers{1, 2, nan, 4}, Numbers{1, 2, 3, nan},
                                           Numbers{infinity, 2, 3, 4}, Numbers{1, 2, 3, infinity}, Numbers{1, 2, -3, 4},
                                           Numbers{1, 2, 3, -4}, QStringLiteral("1, 2, 3, 4"), QByteArray("1234"),
                                           qint64(4), true, QStringList{QStringLiteral("1"), QStringLiteral("2")}));

TEST(LastAreaStore, TakesADisplayOfAnotherTypeForNone)
{
    FakeUserDefaults defaults;
    defaults.setRaw(LastAreaStore::lastAreaDisplayKey, QStringLiteral("seven"));
    EXPECT_EQ(LastAreaStore(defaults).load().displayID, std::nullopt);
}

class LastAreaStoreDeathTest : public ::testing::TestWithParam<qint64> {};

TEST_P(LastAreaStoreDeathTest, EndsTheProgramNamingTheKey)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    FakeUserDefaults defaults;
    defaults.setInteger(LastAreaStore::lastAreaDisplayKey, GetParam());
    EXPECT_DEATH(static_cast<void>(LastAreaStore(defaults).load()),
                 ::testing::HasSubstr("the setting LumenFold.lastAreaDisplayID holds " + std::to_string(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(OfEveryNumberThatIsNoDisplay, LastAreaStoreDeathTest,
                         ::testing::Values(-1, 4294967296LL, std::numeric_limits<qint64>::max(),
                                           std::numeric_limits<qint64>::min()));

class ScreenForLastArea : public ::testing::Test {
protected:
    const Screen left = FakeScreens::plainScreen(1, {0, 0, 1000, 800});
    const Screen right = FakeScreens::plainScreen(2, {1000, 0, 1000, 800});
    const Rect onTheRight{1100, 100, 200, 200};
};

TEST_F(ScreenForLastArea, IsTheOneOfTheStoredDisplay)
{
    EXPECT_EQ(screenForLastArea(onTheRight, 1U, {left, right}), left);
}

TEST_F(ScreenForLastArea, IsTheOneUnderTheCentreWhenTheDisplayIsGoneOrUnknown)
{
    EXPECT_EQ(screenForLastArea(onTheRight, 9U, {left, right}), right);
    EXPECT_EQ(screenForLastArea(onTheRight, std::nullopt, {left, right}), right);
    EXPECT_EQ(screenForLastArea({500, 100, 800, 100}, std::nullopt, {left, right}), left);
}

TEST_F(ScreenForLastArea, IsNoneWhenNoScreenContainsTheCentre)
{
    EXPECT_EQ(screenForLastArea(onTheRight, 9U, {left}), std::nullopt);
    EXPECT_EQ(screenForLastArea(onTheRight, 2U, {}), std::nullopt);
}

} // namespace
} // namespace lumenfold
