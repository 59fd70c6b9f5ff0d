#include "platform/keyboard/KeyPlaces.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace lumenfold::test {
namespace {

/// A row of keys from left to right, as XKB numbers them: "AD01", "AD02", ...
std::vector<std::uint32_t> row(const std::string &prefix, int count)
{
    std::vector<std::uint32_t> codes;
    for (int i = 1; i <= count; ++i) {
        const std::string name = prefix + (i < 10 ? "0" : "") + std::to_string(i);
        codes.push_back(virtualKeyCode(name).value_or(999));
    }
    return codes;
}

using Codes = std::vector<std::uint32_t>;

TEST(KeyPlaces, Digits)
{
    EXPECT_EQ(row("AE", 12), (Codes{18, 19, 20, 21, 23, 22, 26, 28, 25, 29, 27, 24}));
    EXPECT_EQ(virtualKeyCode("TLDE"), 50u);
}

TEST(KeyPlaces, Letters)
{
    EXPECT_EQ(row("AD", 12), (Codes{12, 13, 14, 15, 17, 16, 32, 34, 31, 35, 33, 30}));
    EXPECT_EQ(row("AC", 11), (Codes{0, 1, 2, 3, 5, 4, 38, 40, 37, 41, 39}));
    EXPECT_EQ(row("AB", 10), (Codes{6, 7, 8, 9, 11, 45, 46, 43, 47, 44}));
    EXPECT_EQ(virtualKeyCode("BKSL"), 42u);
    EXPECT_EQ(virtualKeyCode("AC12"), 42u);
}

TEST(KeyPlaces, KeysThatOnlySomeBoardsHave)
{
    EXPECT_EQ(virtualKeyCode("LSGT"), 10u);
    EXPECT_EQ(virtualKeyCode("AE13"), 93u);
    EXPECT_EQ(virtualKeyCode("AB11"), 94u);
    EXPECT_EQ(virtualKeyCode("HJCV"), 102u);
    EXPECT_EQ(virtualKeyCode("HNGL"), 104u);
}

TEST(KeyPlaces, FunctionKeys)
{
    EXPECT_EQ(row("FK", 20),
              (Codes{122, 120, 99, 118, 96, 97, 98, 100, 101, 109, 103, 111, 105, 107, 113, 106, 64, 79, 80, 90}));
    EXPECT_EQ(virtualKeyCode("PRSC"), virtualKeyCode("FK13"));
    EXPECT_EQ(virtualKeyCode("SCLK"), virtualKeyCode("FK14"));
    EXPECT_EQ(virtualKeyCode("PAUS"), virtualKeyCode("FK15"));
}

TEST(KeyPlaces, NamedKeys)
{
    EXPECT_EQ(virtualKeyCode("ESC"), 53u);
    EXPECT_EQ(virtualKeyCode("TAB"), 48u);
    EXPECT_EQ(virtualKeyCode("RTRN"), 36u);
    EXPECT_EQ(virtualKeyCode("BKSP"), 51u);
    EXPECT_EQ(virtualKeyCode("SPCE"), 49u);
    EXPECT_EQ(virtualKeyCode("INS"), 114u);
    EXPECT_EQ(virtualKeyCode("HOME"), 115u);
    EXPECT_EQ(virtualKeyCode("PGUP"), 116u);
    EXPECT_EQ(virtualKeyCode("DELE"), 117u);
    EXPECT_EQ(virtualKeyCode("END"), 119u);
    EXPECT_EQ(virtualKeyCode("PGDN"), 121u);
    EXPECT_EQ(virtualKeyCode("LEFT"), 123u);
    EXPECT_EQ(virtualKeyCode("RGHT"), 124u);
    EXPECT_EQ(virtualKeyCode("DOWN"), 125u);
    EXPECT_EQ(virtualKeyCode("UP"), 126u);
}

TEST(KeyPlaces, ModifierKeys)
{
    EXPECT_EQ(virtualKeyCode("RWIN"), 54u);
    EXPECT_EQ(virtualKeyCode("LWIN"), 55u);
    EXPECT_EQ(virtualKeyCode("LFSH"), 56u);
    EXPECT_EQ(virtualKeyCode("CAPS"), 57u);
    EXPECT_EQ(virtualKeyCode("LALT"), 58u);
    EXPECT_EQ(virtualKeyCode("LCTL"), 59u);
    EXPECT_EQ(virtualKeyCode("RTSH"), 60u);
    EXPECT_EQ(virtualKeyCode("RALT"), 61u);
    EXPECT_EQ(virtualKeyCode("RCTL"), 62u);
}

TEST(KeyPlaces, NumericPad)
{
    const std::vector<std::pair<std::string_view, std::uint32_t>> pad{
        {"KPDL", 65}, {"KPMU", 67}, {"KPAD", 69}, {"NMLK", 71}, {"KPDV", 75}, {"KPEN", 76},
        {"KPSU", 78}, {"KPEQ", 81}, {"KP0", 82},  {"KP1", 83},  {"KP2", 84},  {"KP3", 85},
        {"KP4", 86},  {"KP5", 87},  {"KP6", 88},  {"KP7", 89},  {"KP8", 91},  {"KP9", 92},
    };
    for (const auto &[name, code] : pad) {
        EXPECT_EQ(virtualKeyCode(name), code) << name;
        EXPECT_TRUE(isOnNumericPad(code)) << name;
    }
    for (const std::uint32_t elsewhere : {0u, 18u, 36u, 114u, 123u, 126u}) {
        EXPECT_FALSE(isOnNumericPad(elsewhere)) << elsewhere;
    }
}

TEST(KeyPlaces, OtherNamesHaveNone)
{
    EXPECT_EQ(virtualKeyCode(""), std::nullopt);
    EXPECT_EQ(virtualKeyCode("AE1"), std::nullopt);
    EXPECT_EQ(virtualKeyCode("ae01"), std::nullopt);
    EXPECT_EQ(virtualKeyCode("I172"), std::nullopt);
    EXPECT_EQ(virtualKeyCode("FK21"), std::nullopt);
}

TEST(EngravedName, IsForKeysThatTypeNothing)
{
    EXPECT_EQ(engravedName(96), u"F5");
    EXPECT_EQ(engravedName(111), u"F12");
    EXPECT_EQ(engravedName(105), u"F13");
    EXPECT_EQ(engravedName(83), u"1");
    EXPECT_EQ(engravedName(115), u"↖");
    EXPECT_TRUE(engravedName(0).isEmpty());
    EXPECT_TRUE(engravedName(18).isEmpty());
    EXPECT_TRUE(engravedName(4000).isEmpty());
}

} // namespace
} // namespace lumenfold::test
