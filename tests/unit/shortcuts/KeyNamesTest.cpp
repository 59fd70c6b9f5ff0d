#include "shortcuts/KeyNames.h"

#include "platform/keyboard/KeyEvent.h"

#include <gtest/gtest.h>

#include <map>

namespace lumenfold::test {
namespace {

constexpr std::uint64_t allFour = keyFlags::control | keyFlags::option | keyFlags::shift | keyFlags::command;
/// Every bit but the four.
constexpr std::uint64_t everythingElse = ~allFour;

TEST(CarbonModifiers, HaveTheBitOfEachModifier)
{
    EXPECT_EQ(carbonModifiers(0), 0u);
    EXPECT_EQ(carbonModifiers(keyFlags::command), 0x0100u);
    EXPECT_EQ(carbonModifiers(keyFlags::shift), 0x0200u);
    EXPECT_EQ(carbonModifiers(keyFlags::option), 0x0800u);
    EXPECT_EQ(carbonModifiers(keyFlags::control), 0x1000u);
}

TEST(CarbonModifiers, AddUp)
{
    EXPECT_EQ(carbonModifiers(keyFlags::option | keyFlags::command), 0x0900u);
    EXPECT_EQ(carbonModifiers(keyFlags::control | keyFlags::option | keyFlags::command), 0x1900u);
    EXPECT_EQ(carbonModifiers(keyFlags::control | keyFlags::option), 0x1800u);
    EXPECT_EQ(carbonModifiers(keyFlags::control | keyFlags::command), 0x1100u);
    EXPECT_EQ(carbonModifiers(allFour), 0x1b00u);
}

TEST(CarbonModifiers, IgnoreEveryOtherFlag)
{
    EXPECT_EQ(carbonModifiers(keyFlags::capsLock), 0u);
    EXPECT_EQ(carbonModifiers(everythingElse), 0u);
    EXPECT_EQ(carbonModifiers(everythingElse | keyFlags::shift), 0x0200u);
}

TEST(ModifierSymbols, StandInOneOrder)
{
    EXPECT_EQ(modifierSymbols(allFour), QStringLiteral("⌃⌥⇧⌘"));
    EXPECT_EQ(modifierSymbols(keyFlags::command | keyFlags::option), QStringLiteral("⌥⌘"));
    EXPECT_EQ(modifierSymbols(keyFlags::command | keyFlags::shift), QStringLiteral("⇧⌘"));
    EXPECT_EQ(modifierSymbols(keyFlags::control), QStringLiteral("⌃"));
}

TEST(ModifierSymbols, IgnoreEveryOtherFlag)
{
    EXPECT_EQ(modifierSymbols(keyFlags::capsLock), QString());
    EXPECT_EQ(modifierSymbols(everythingElse), QString());
}

TEST(KeyLabel, IsFixedForDigitsPunctuationAndNamedKeys)
{
    const std::map<std::uint32_t, QString> labels{
        {18, QStringLiteral("1")},       {19, QStringLiteral("2")},       {20, QStringLiteral("3")},
        {21, QStringLiteral("4")},       {22, QStringLiteral("6")},       {23, QStringLiteral("5")},
        {24, QStringLiteral("=")},       {25, QStringLiteral("9")},       {26, QStringLiteral("7")},
        {27, QStringLiteral("-")},       {28, QStringLiteral("8")},       {29, QStringLiteral("0")},
        {30, QStringLiteral("]")},       {33, QStringLiteral("[")},       {36, QStringLiteral("\u21a9")},
        {39, QStringLiteral("'")},       {41, QStringLiteral(";")},       {42, QStringLiteral("\\")},
        {43, QStringLiteral(",")},       {44, QStringLiteral("/")},       {47, QStringLiteral(".")},
        {48, QStringLiteral("\u21e5")},  {49, QStringLiteral("Space")},   {50, QStringLiteral("`")},
        {51, QStringLiteral("\u232b")},  {53, QStringLiteral("\u238b")},  {117, QStringLiteral("\u2326")},
        {123, QStringLiteral("\u2190")}, {124, QStringLiteral("\u2192")}, {125, QStringLiteral("\u2193")},
        {126, QStringLiteral("\u2191")},
    };
    for (std::uint32_t keyCode = 0; keyCode < 128; ++keyCode) {
        const auto expected = labels.contains(keyCode) ? labels.at(keyCode) : QStringLiteral("TYPED");
        EXPECT_EQ(keyLabel(keyCode, QStringLiteral("typed")), expected) << "key code " << keyCode;
    }
}

TEST(KeyLabel, DoesNotNeedCharactersForNamedKeys)
{
    EXPECT_EQ(keyLabel(18, std::nullopt), QStringLiteral("1"));
    EXPECT_EQ(keyLabel(18, QStringLiteral("!")), QStringLiteral("1"));
    EXPECT_EQ(keyLabel(49, QStringLiteral(" ")), QStringLiteral("Space"));
}

TEST(KeyLabel, FollowsTheLayoutForOtherKeys)
{
    EXPECT_EQ(keyLabel(0, QStringLiteral("a")), QStringLiteral("A"));
    EXPECT_EQ(keyLabel(0, QStringLiteral("q")), QStringLiteral("Q"));
    EXPECT_EQ(keyLabel(0, QStringLiteral("ф")), QStringLiteral("Ф"));
    EXPECT_EQ(keyLabel(10, QStringLiteral("ß")), QStringLiteral("SS"));
}

TEST(KeyLabel, TellsNoCharactersFromAnEmptyText)
{
    EXPECT_EQ(keyLabel(0, std::nullopt), QStringLiteral("?"));
    EXPECT_EQ(keyLabel(0, QString()), QString());
}

} // namespace
} // namespace lumenfold::test
