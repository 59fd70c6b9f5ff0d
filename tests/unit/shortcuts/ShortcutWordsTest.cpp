#include "shortcuts/ShortcutWords.h"

#include "platform/keyboard/KeyEvent.h"

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

TEST(ShortcutWordsTest, KeysAreCalledAsTheyAreHere)
{
    EXPECT_EQ(shortcutInWords({18, carbon::optionKey | carbon::cmdKey, QStringLiteral("⌥⌘1")}), u"Alt+Super+1");
    EXPECT_EQ(shortcutInWords({49, carbon::controlKey | carbon::shiftKey, QStringLiteral("⌃⇧Space")}),
              u"Ctrl+Shift+Space");
    EXPECT_EQ(shortcutInWords({96, 0, QStringLiteral("F5")}), u"F5");
}

TEST(ShortcutWordsTest, WhateverIsStoredHasWords)
{
    EXPECT_EQ(shortcutInWords({18, carbon::cmdKey, QString()}), u"Super+");
    EXPECT_EQ(shortcutInWords({18, carbon::cmdKey, QStringLiteral("⌘")}), u"Super+⌘");
}

} // namespace
} // namespace lumenfold::test
