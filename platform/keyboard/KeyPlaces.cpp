#include "platform/keyboard/KeyPlaces.h"

#include <algorithm>
#include <array>

namespace lumenfold {
namespace {

struct KeyPlace {
    std::string_view name;
    std::uint8_t keyCode;
};

/// By rows of the board. Several names have the same code where boards differ in what they call a place, and where
/// macOS gives a PC key the code of one of its own (Print Screen, Scroll Lock and Pause are F13 to F15, Insert is
/// Help).
constexpr KeyPlace keyPlaces[]{
    // The function row.
    {"ESC", 53},
    {"FK01", 122},
    {"FK02", 120},
    {"FK03", 99},
    {"FK04", 118},
    {"FK05", 96},
    {"FK06", 97},
    {"FK07", 98},
    {"FK08", 100},
    {"FK09", 101},
    {"FK10", 109},
    {"FK11", 103},
    {"FK12", 111},
    {"FK13", 105},
    {"FK14", 107},
    {"FK15", 113},
    {"FK16", 106},
    {"FK17", 64},
    {"FK18", 79},
    {"FK19", 80},
    {"FK20", 90},
    {"PRSC", 105},
    {"SCLK", 107},
    {"PAUS", 113},
    // Digits. TLDE is left of 1; the key that ISO boards have beside the left shift is LSGT.
    {"TLDE", 50},
    {"AE01", 18},
    {"AE02", 19},
    {"AE03", 20},
    {"AE04", 21},
    {"AE05", 23},
    {"AE06", 22},
    {"AE07", 26},
    {"AE08", 28},
    {"AE09", 25},
    {"AE10", 29},
    {"AE11", 27},
    {"AE12", 24},
    {"AE13", 93},
    {"BKSP", 51},
    // Upper letters.
    {"TAB", 48},
    {"AD01", 12},
    {"AD02", 13},
    {"AD03", 14},
    {"AD04", 15},
    {"AD05", 17},
    {"AD06", 16},
    {"AD07", 32},
    {"AD08", 34},
    {"AD09", 31},
    {"AD10", 35},
    {"AD11", 33},
    {"AD12", 30},
    {"BKSL", 42},
    {"AC12", 42},
    // Home row.
    {"CAPS", 57},
    {"AC01", 0},
    {"AC02", 1},
    {"AC03", 2},
    {"AC04", 3},
    {"AC05", 5},
    {"AC06", 4},
    {"AC07", 38},
    {"AC08", 40},
    {"AC09", 37},
    {"AC10", 41},
    {"AC11", 39},
    {"RTRN", 36},
    // Lower letters.
    {"LFSH", 56},
    {"LSGT", 10},
    {"AB01", 6},
    {"AB02", 7},
    {"AB03", 8},
    {"AB04", 9},
    {"AB05", 11},
    {"AB06", 45},
    {"AB07", 46},
    {"AB08", 43},
    {"AB09", 47},
    {"AB10", 44},
    {"AB11", 94},
    {"RTSH", 60},
    // The row of the space bar.
    {"LCTL", 59},
    {"LWIN", 55},
    {"LMTA", 55},
    {"LALT", 58},
    {"SPCE", 49},
    {"RALT", 61},
    {"ALGR", 61},
    {"RWIN", 54},
    {"RMTA", 54},
    {"COMP", 110},
    {"MENU", 110},
    {"RCTL", 62},
    {"HJCV", 102},
    {"HNGL", 104},
    // Arrows and the six keys above them.
    {"INS", 114},
    {"HELP", 114},
    {"HOME", 115},
    {"PGUP", 116},
    {"DELE", 117},
    {"END", 119},
    {"PGDN", 121},
    {"LEFT", 123},
    {"RGHT", 124},
    {"DOWN", 125},
    {"UP", 126},
    // The numeric pad.
    {"NMLK", 71},
    {"KPDV", 75},
    {"KPMU", 67},
    {"KPSU", 78},
    {"KPAD", 69},
    {"KPEN", 76},
    {"KPDL", 65},
    {"KPEQ", 81},
    {"KPPT", 95},
    {"JPCM", 95},
    {"KP0", 82},
    {"KP1", 83},
    {"KP2", 84},
    {"KP3", 85},
    {"KP4", 86},
    {"KP5", 87},
    {"KP6", 88},
    {"KP7", 89},
    {"KP8", 91},
    {"KP9", 92},
    // Sound.
    {"MUTE", 74},
    {"VOL+", 72},
    {"VOL-", 73},
};

struct Engraving {
    std::uint8_t keyCode;
    QStringView name;
};

constexpr Engraving engravings[]{
    {122, u"F1"},  {120, u"F2"},  {99, u"F3"},   {118, u"F4"},  {96, u"F5"},    {97, u"F6"},   {98, u"F7"},
    {100, u"F8"},  {101, u"F9"},  {109, u"F10"}, {103, u"F11"}, {111, u"F12"},  {105, u"F13"}, {107, u"F14"},
    {113, u"F15"}, {106, u"F16"}, {64, u"F17"},  {79, u"F18"},  {80, u"F19"},   {90, u"F20"},  {115, u"↖"},
    {119, u"↘"},   {116, u"⇞"},   {121, u"⇟"},   {114, u"Ins"}, {110, u"Menu"}, {76, u"⌅"},    {71, u"⌧"},
    {65, u"."},    {82, u"0"},    {83, u"1"},    {84, u"2"},    {85, u"3"},     {86, u"4"},    {87, u"5"},
    {88, u"6"},    {89, u"7"},    {91, u"8"},    {92, u"9"},
};

constexpr std::uint8_t numericPad[]{65, 67, 69, 71, 75, 76, 78, 81, 82, 83, 84, 85, 86, 87, 88, 89, 91, 92, 95};

} // namespace

std::optional<std::uint32_t> virtualKeyCode(std::string_view keyName)
{
    const auto *place = std::ranges::find(keyPlaces, keyName, &KeyPlace::name);
    if (place == std::ranges::end(keyPlaces)) {
        return std::nullopt;
    }
    return place->keyCode;
}

QStringView engravedName(std::uint32_t keyCode)
{
    const auto *engraving = std::ranges::find(engravings, keyCode, &Engraving::keyCode);
    return engraving == std::ranges::end(engravings) ? QStringView() : engraving->name;
}

bool isOnNumericPad(std::uint32_t keyCode)
{
    return std::ranges::find(numericPad, keyCode) != std::ranges::end(numericPad);
}

} // namespace lumenfold
