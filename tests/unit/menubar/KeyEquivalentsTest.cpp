#include "app/menubar/KeyEquivalents.h"

#include "app/menubar/MenuBarController.h"
#include "platform/keyboard/KeyEvent.h"

#include <QList>

#include <gtest/gtest.h>

#include <map>

namespace lumenfold::test {
namespace {

TEST(KeyEquivalents, EveryKeyOfTheBoardHasItsCharacter)
{
    const std::map<std::uint32_t, QString> expected{
        {0, QStringLiteral("a")},        {1, QStringLiteral("s")},        {2, QStringLiteral("d")},
        {3, QStringLiteral("f")},        {4, QStringLiteral("h")},        {5, QStringLiteral("g")},
        {6, QStringLiteral("z")},        {7, QStringLiteral("x")},        {8, QStringLiteral("c")},
        {9, QStringLiteral("v")},        {11, QStringLiteral("b")},       {12, QStringLiteral("q")},
        {13, QStringLiteral("w")},       {14, QStringLiteral("e")},       {15, QStringLiteral("r")},
        {16, QStringLiteral("y")},       {17, QStringLiteral("t")},       {18, QStringLiteral("1")},
        {19, QStringLiteral("2")},       {20, QStringLiteral("3")},       {21, QStringLiteral("4")},
        {22, QStringLiteral("6")},       {23, QStringLiteral("5")},       {24, QStringLiteral("=")},
        {25, QStringLiteral("9")},       {26, QStringLiteral("7")},       {27, QStringLiteral("-")},
        {28, QStringLiteral("8")},       {29, QStringLiteral("0")},       {30, QStringLiteral("]")},
        {31, QStringLiteral("o")},       {32, QStringLiteral("u")},       {33, QStringLiteral("[")},
        {34, QStringLiteral("i")},       {35, QStringLiteral("p")},       {36, QStringLiteral("\r")},
        {37, QStringLiteral("l")},       {38, QStringLiteral("j")},       {39, QStringLiteral("'")},
        {40, QStringLiteral("k")},       {41, QStringLiteral(";")},       {42, QStringLiteral("\\")},
        {43, QStringLiteral(",")},       {44, QStringLiteral("/")},       {45, QStringLiteral("n")},
        {46, QStringLiteral("m")},       {47, QStringLiteral(".")},       {48, QStringLiteral("\t")},
        {49, QStringLiteral(" ")},       {50, QStringLiteral("`")},       {51, QStringLiteral("\u007f")},
        {53, QStringLiteral("\u001b")},  {117, QStringLiteral("\uF728")}, {123, QStringLiteral("\uF702")},
        {124, QStringLiteral("\uF703")}, {125, QStringLiteral("\uF701")}, {126, QStringLiteral("\uF700")},
    };
    for (std::uint32_t keyCode = 0; keyCode <= 300; ++keyCode) {
        const auto known = expected.find(keyCode);
        EXPECT_EQ(MenuBarController::keyEquivalent(keyCode), known == expected.end() ? QString() : known->second)
            << keyCode;
    }
    EXPECT_EQ(MenuBarController::keyEquivalent(0xFFFFFFFF), QString());
}

TEST(KeyEquivalents, EachCarbonModifierHasItsFlag)
{
    EXPECT_EQ(modifierMaskForCarbon(0x0100), keyFlags::command);
    EXPECT_EQ(modifierMaskForCarbon(0x0800), keyFlags::option);
    EXPECT_EQ(modifierMaskForCarbon(0x1000), keyFlags::control);
    EXPECT_EQ(modifierMaskForCarbon(0x0200), keyFlags::shift);
    EXPECT_EQ(modifierMaskForCarbon(0xFFFFFFFF & ~0x1B00U), 0U);
    EXPECT_EQ(modifierMaskForCarbon(0xFFFFFFFF),
              keyFlags::command | keyFlags::option | keyFlags::control | keyFlags::shift);
}

} // namespace
} // namespace lumenfold::test
