#include "platform/keyboard/x11/KeyboardMap.h"

#include <xkbcommon/xkbcommon.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace lumenfold::test {
namespace {

using x11::KeyboardMap;
using x11::KeyCombination;
using x11::KeyGrab;

// Keycodes of a PC keyboard under evdev.
constexpr xcb_keycode_t digit1 = 10;
constexpr xcb_keycode_t keyQ = 24;
constexpr xcb_keycode_t leftShift = 50;
constexpr xcb_keycode_t space = 65;
constexpr xcb_keycode_t f5 = 71;
constexpr xcb_keycode_t keypad1 = 87;
constexpr xcb_keycode_t isoKey = 94;
constexpr xcb_keycode_t printScreen = 107;
constexpr xcb_keycode_t playKey = 172;

constexpr std::uint16_t shift = XCB_MOD_MASK_SHIFT;
constexpr std::uint16_t lock = XCB_MOD_MASK_LOCK;
constexpr std::uint16_t control = XCB_MOD_MASK_CONTROL;
constexpr std::uint16_t alt = XCB_MOD_MASK_1;
constexpr std::uint16_t numLock = XCB_MOD_MASK_2;
constexpr std::uint16_t super = XCB_MOD_MASK_4;
constexpr std::uint16_t altGr = XCB_MOD_MASK_5;

constexpr std::uint32_t optionCommand = carbon::optionKey | carbon::cmdKey;

KeyboardMap mapOf(xkb_keymap *keymap)
{
    const std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> owned(keymap, xkb_keymap_unref);
    return owned ? KeyboardMap::fromKeymap(owned.get()) : KeyboardMap();
}

KeyboardMap mapOfLayout(const char *layout, const char *options = nullptr)
{
    const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS),
                                                                             xkb_context_unref);
    const xkb_rule_names names{.rules = "evdev", .model = "pc105", .layout = layout, .variant = "", .options = options};
    return mapOf(xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

/// A keyboard of two keys, on which Num Lock and Scroll Lock are what the test says and there is no Super.
KeyboardMap smallMap(const std::string &numLockModifier, const std::string &scrollLockModifier)
{
    const std::string text =
        "xkb_keymap {\n"
        "xkb_keycodes { <AE01> = 10; <LALT> = 64; <NMLK> = 77; <SCLK> = 78; };\n"
        "xkb_types { virtual_modifiers Alt, NumLock, ScrollLock;\n"
        "  type \"ONE_LEVEL\" { modifiers = none; }; };\n"
        "xkb_compatibility { virtual_modifiers Alt, NumLock, ScrollLock;\n"
        "  interpret Alt_L { virtualModifier = Alt; action = SetMods(modifiers = Alt); };\n"
        "  interpret Num_Lock { virtualModifier = NumLock; action = LockMods(modifiers = NumLock); };\n"
        "  interpret Scroll_Lock { virtualModifier = ScrollLock;\n"
        "    action = LockMods(modifiers = ScrollLock); }; };\n"
        "xkb_symbols { key <AE01> { [ 1 ] }; key <LALT> { [ Alt_L ] };\n"
        "  key <NMLK> { [ Num_Lock ] }; key <SCLK> { [ Scroll_Lock ] };\n"
        "  modifier_map Mod1 { <LALT> }; modifier_map " +
        numLockModifier + " { <NMLK> }; modifier_map " + scrollLockModifier + " { <SCLK> }; };\n};";
    const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(
        xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES), xkb_context_unref);
    return mapOf(xkb_keymap_new_from_string(context.get(), text.c_str(), XKB_KEYMAP_FORMAT_TEXT_V1,
                                            XKB_KEYMAP_COMPILE_NO_FLAGS));
}

std::vector<std::uint16_t> sorted(std::vector<std::uint16_t> masks)
{
    std::ranges::sort(masks);
    return masks;
}

TEST(KeyboardMap, GrabsAKeyWithEveryCombinationOfLocks)
{
    const KeyGrab grab = mapOfLayout("us").grabFor({.keyCode = 18, .carbonModifiers = optionCommand});
    EXPECT_EQ(grab.keycodes, std::vector<xcb_keycode_t>{digit1});
    const std::uint16_t mask = alt | super;
    EXPECT_EQ(sorted(grab.modifierMasks),
              sorted({mask, mask | lock, mask | numLock, static_cast<std::uint16_t>(mask | lock | numLock)}));
}

TEST(KeyboardMap, ScrollLockCountsWhereItIsAModifier)
{
    const KeyGrab grab = smallMap("Mod2", "Mod3").grabFor({.keyCode = 18, .carbonModifiers = carbon::optionKey});
    EXPECT_EQ(grab.modifierMasks.size(), 8u);
    EXPECT_EQ(sorted(grab.modifierMasks).back(), alt | lock | XCB_MOD_MASK_2 | XCB_MOD_MASK_3);
}

TEST(KeyboardMap, LocksOnOneBitCountOnce)
{
    const KeyGrab grab = smallMap("Mod3", "Mod3").grabFor({.keyCode = 18, .carbonModifiers = carbon::optionKey});
    EXPECT_EQ(sorted(grab.modifierMasks),
              sorted({alt, alt | lock, alt | XCB_MOD_MASK_3, static_cast<std::uint16_t>(alt | lock | XCB_MOD_MASK_3)}));
}

TEST(KeyboardMap, MapsEachModifier)
{
    const KeyboardMap map = mapOfLayout("us");
    const auto mask = [&map](std::uint32_t modifiers) {
        return map.grabFor({.keyCode = 18, .carbonModifiers = modifiers}).modifierMasks.at(0);
    };
    EXPECT_EQ(mask(0), 0);
    EXPECT_EQ(mask(carbon::cmdKey), super);
    EXPECT_EQ(mask(carbon::shiftKey), shift);
    EXPECT_EQ(mask(carbon::optionKey), alt);
    EXPECT_EQ(mask(carbon::controlKey), control);
}

TEST(KeyboardMap, FollowsModifiersThatChangePlaces)
{
    const KeyboardMap map = mapOfLayout("us", "altwin:swap_alt_win");
    EXPECT_EQ(map.combination(digit1, alt)->carbonModifiers, carbon::optionKey);
    EXPECT_EQ(map.combination(digit1, super)->carbonModifiers, carbon::cmdKey);
}

TEST(KeyboardMap, AKeyOrModifierThatIsNotThereCannotBeGrabbed)
{
    const KeyboardMap map = smallMap("Mod2", "Mod3");
    EXPECT_TRUE(map.grabFor({.keyCode = 18, .carbonModifiers = carbon::optionKey}).isPossible());
    EXPECT_FALSE(map.grabFor({.keyCode = 18, .carbonModifiers = carbon::cmdKey}).isPossible());
    EXPECT_FALSE(map.grabFor({.keyCode = 19, .carbonModifiers = carbon::optionKey}).isPossible());
    EXPECT_FALSE(map.grabFor({.keyCode = 0xff, .carbonModifiers = 0}).isPossible());
    EXPECT_FALSE(map.grabFor({.keyCode = 0xffffffff, .carbonModifiers = 0}).isPossible());
    EXPECT_FALSE(KeyboardMap().grabFor({.keyCode = 18, .carbonModifiers = 0}).isPossible());
}

TEST(KeyboardMap, GrabsEveryKeyOfAPlace)
{
    const KeyGrab grab = mapOfLayout("us").grabFor({.keyCode = 105, .carbonModifiers = 0});
    EXPECT_TRUE(std::ranges::count(grab.keycodes, printScreen) == 1 && grab.keycodes.size() == 2)
        << "Print Screen, and F13";
}

TEST(KeyboardMap, ReadsACombinationWithoutTheLocks)
{
    const KeyboardMap map = mapOfLayout("us");
    EXPECT_EQ(map.combination(digit1, alt | super | lock | numLock), (KeyCombination{18, optionCommand}));
    EXPECT_EQ(map.combination(digit1, 0), (KeyCombination{18, 0}));
    EXPECT_EQ(map.combination(digit1, altGr), std::nullopt) << "no combination has it";
    EXPECT_EQ(map.combination(playKey, alt), std::nullopt);
}

TEST(KeyboardMap, TranslatesAPress)
{
    const std::optional<KeyEvent> event = mapOfLayout("us").keyDown(digit1, shift | lock | control | alt | super, 0);
    ASSERT_TRUE(event);
    EXPECT_EQ(event->type, KeyEventType::keyDown);
    EXPECT_EQ(event->keyCode, 18u);
    EXPECT_EQ(event->flags,
              keyFlags::shift | keyFlags::capsLock | keyFlags::control | keyFlags::option | keyFlags::command);
    EXPECT_EQ(event->charactersIgnoringModifiers, QStringLiteral("1")) << "not what shift makes of it";
    EXPECT_EQ(mapOfLayout("us").keyDown(digit1, numLock | altGr, 0)->flags, 0u);
    EXPECT_EQ(mapOfLayout("us").keyDown(playKey, 0, 0), std::nullopt);
}

TEST(KeyboardMap, CharactersFollowTheActiveLayout)
{
    const KeyboardMap map = mapOfLayout("us,ru");
    EXPECT_EQ(map.keyDown(keyQ, 0, 0)->charactersIgnoringModifiers, QStringLiteral("q"));
    EXPECT_EQ(map.keyDown(keyQ, 0, 1)->charactersIgnoringModifiers, QStringLiteral("й"));
    EXPECT_EQ(map.keyDown(space, 0, 1)->charactersIgnoringModifiers, QStringLiteral(" "));
    EXPECT_EQ(map.keyDown(keyQ, 0, 1)->keyCode, 12u);
    EXPECT_EQ(mapOfLayout("fr").keyDown(keyQ, 0, 0)->charactersIgnoringModifiers, QStringLiteral("a"));
    EXPECT_EQ(mapOfLayout("de").keyDown(isoKey, 0, 0)->charactersIgnoringModifiers, QStringLiteral("<"));
    EXPECT_EQ(mapOfLayout("de").keyDown(isoKey, 0, 0)->keyCode, 10u);
}

TEST(KeyboardMap, KeysThatTypeNothingGiveTheirName)
{
    const KeyboardMap map = mapOfLayout("us");
    EXPECT_EQ(map.keyDown(f5, 0, 0)->charactersIgnoringModifiers, QStringLiteral("F5"));
    EXPECT_EQ(map.keyDown(keypad1, 0, 0)->charactersIgnoringModifiers, QStringLiteral("1"));
    EXPECT_EQ(map.keyDown(keypad1, 0, 0)->flags, keyFlags::numericPad);
    EXPECT_EQ(map.keyDown(leftShift, 0, 0)->charactersIgnoringModifiers, std::nullopt);
}

TEST(KeyboardMap, KnowsModifierKeys)
{
    const KeyboardMap map = mapOfLayout("us");
    EXPECT_TRUE(map.isModifier(leftShift));
    EXPECT_TRUE(map.isModifier(66)) << "Caps Lock";
    EXPECT_TRUE(map.isModifier(77)) << "Num Lock";
    EXPECT_TRUE(map.isModifier(133)) << "Super";
    EXPECT_FALSE(map.isModifier(digit1));
    EXPECT_FALSE(map.isModifier(f5));
    EXPECT_FALSE(mapOfLayout("us", "caps:escape").isModifier(66)) << "Caps Lock that is Escape";
}

TEST(KeyboardMap, EqualMapsAreEqual)
{
    EXPECT_EQ(mapOfLayout("us"), mapOfLayout("us"));
    EXPECT_NE(mapOfLayout("us"), mapOfLayout("fr"));
    EXPECT_NE(smallMap("Mod2", "Mod3"), smallMap("Mod3", "Mod2"));
}

} // namespace
} // namespace lumenfold::test
