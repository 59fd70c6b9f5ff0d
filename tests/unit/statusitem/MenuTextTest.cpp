#include "platform/statusitem/MenuText.h"

#include "platform/keyboard/KeyEvent.h"

#include <QKeySequence>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

MenuItem withKey(const QString &key, std::uint64_t mask)
{
    MenuItem item;
    item.keyEquivalent = key;
    item.keyEquivalentModifierMask = mask;
    return item;
}

TEST(MenuText, CommandIsSuperAndOptionIsAlt)
{
    const MenuItem item = withKey(QStringLiteral("1"), keyFlags::option | keyFlags::command);
    EXPECT_EQ(shortcutText(item), QStringLiteral("Super+Alt+1"));
    EXPECT_EQ(shortcutTokens(item), QStringList({QStringLiteral("Super"), QStringLiteral("Alt"), QStringLiteral("1")}));
}

TEST(MenuText, AllModifiersHaveOneOrder)
{
    const MenuItem item = withKey(QStringLiteral("s"), ~std::uint64_t{0});
    EXPECT_EQ(shortcutText(item), QStringLiteral("Super+Ctrl+Alt+Shift+S"));
    EXPECT_EQ(shortcutTokens(item).join(u' '), QStringLiteral("Super Control Alt Shift S"));
}

TEST(MenuText, WithoutAKeyThereIsNothing)
{
    const MenuItem item = withKey(QString(), keyFlags::command);
    EXPECT_EQ(shortcutText(item), QString());
    EXPECT_TRUE(shortcutTokens(item).isEmpty());
}

TEST(MenuText, KeysWithoutALetterAreNamed)
{
    const auto text = [](const QString &key) { return shortcutText(withKey(key, 0)); };
    const auto token = [](const QString &key) { return shortcutTokens(withKey(key, 0)).value(0); };
    EXPECT_EQ(text(QStringLiteral("\uF700")), QStringLiteral("Up"));
    EXPECT_EQ(text(QStringLiteral("\r")), QStringLiteral("Return"));
    EXPECT_EQ(text(QStringLiteral(" ")), QStringLiteral("Space"));
    EXPECT_EQ(text(QStringLiteral("-")), QStringLiteral("-"));
    EXPECT_EQ(text(QStringLiteral(",")), QStringLiteral(","));
    EXPECT_EQ(token(QStringLiteral("-")), QStringLiteral("minus"));
    EXPECT_EQ(token(QStringLiteral("\uF728")), QStringLiteral("Delete"));
    EXPECT_EQ(token(QStringLiteral("\u001b")), QStringLiteral("Escape"));
    EXPECT_EQ(token(QStringLiteral(",")), QStringLiteral(","));
}

TEST(MenuText, TheNamesAreKeysToTheToolkitsOfPanels)
{
    for (const char16_t key : {u'\r', u'\t', u' ', u'\x7f', u'\x1b', u'\xF700', u'\xF701', u'\xF702', u'\xF703',
                               u'\xF728', u'a', u'1', u',', u'`'}) {
        const QString token = shortcutTokens(withKey(QString(QChar(key)), 0)).value(0);
        const QKeySequence read = QKeySequence::fromString(token, QKeySequence::PortableText);
        EXPECT_EQ(read.count(), 1) << qPrintable(token);
        EXPECT_NE(read[0].key(), Qt::Key_unknown) << qPrintable(token);
    }
}

TEST(MenuText, AMarkInATitleIsNoMnemonic)
{
    EXPECT_EQ(plainLabel(QStringLiteral("Connected · a_b@c_d.org"), u'_'), QStringLiteral("Connected · a__b@c__d.org"));
    EXPECT_EQ(plainLabel(QStringLiteral("R&D"), u'&'), QStringLiteral("R&&D"));
}

TEST(MenuText, NoTitleBreaksTheMenu)
{
    EXPECT_EQ(plainLabel(QStringLiteral("a\tb\nc\u2028d"), u'&'), QStringLiteral("a b c d"));
    const QString endless = plainLabel(QString(100'000, u'x'), u'&');
    EXPECT_EQ(endless.size(), 257);
    EXPECT_EQ(endless[128], QChar(0x2026));
}

} // namespace
} // namespace lumenfold::test
