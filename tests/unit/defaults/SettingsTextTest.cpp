#include "platform/defaults/SettingsText.h"

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

TEST(SettingsText, NothingIsSound)
{
    const ParsedSettings settings = parseSettings({});
    EXPECT_EQ(settings.condition, SettingsCondition::sound);
    EXPECT_TRUE(settings.values.isEmpty());
}

TEST(SettingsText, ReadsTheDialectOfTheToolkit)
{
    const ParsedSettings settings = parseSettings("[General]\n"
                                                  "LumenFold.text=plain text\n"
                                                  "LumenFold.quoted=\"a, b; c\"\n"
                                                  "LumenFold.list=10, 20, 300, 200\n"
                                                  "LumenFold.data=@ByteArray({\\\"a\\\":\\x1})\n"
                                                  "; a remark\n"
                                                  "[window]\n"
                                                  "width=5\n");
    EXPECT_EQ(settings.condition, SettingsCondition::sound);
    EXPECT_EQ(settings.values.value(QStringLiteral("LumenFold.text")), QStringLiteral("plain text"));
    EXPECT_EQ(settings.values.value(QStringLiteral("LumenFold.quoted")), QStringLiteral("a, b; c"));
    EXPECT_EQ(settings.values.value(QStringLiteral("LumenFold.list")).toStringList().size(), 4);
    EXPECT_EQ(settings.values.value(QStringLiteral("LumenFold.data")), QByteArray("{\"a\":\x01}"));
    EXPECT_EQ(settings.values.value(QStringLiteral("window/width")), QStringLiteral("5"));
}

TEST(SettingsText, ALastLineThatIsCutOffLeavesTheOthers)
{
    const ParsedSettings settings = parseSettings("[General]\nLumenFold.a=1\nLumenFold.b");
    EXPECT_EQ(settings.condition, SettingsCondition::cutOff);
    EXPECT_EQ(settings.values.keys(), QStringList{QStringLiteral("LumenFold.a")});
}

TEST(SettingsText, LinesThatAreNoSettingsDoNotCount)
{
    const ParsedSettings settings = parseSettings("[General]\nthis is a letter\nLumenFold.a=1\n");
    EXPECT_EQ(settings.condition, SettingsCondition::damaged);
    EXPECT_EQ(settings.values.keys(), QStringList{QStringLiteral("LumenFold.a")});
    EXPECT_EQ(parseSettings("one word").condition, SettingsCondition::damaged);
}

TEST(SettingsText, BytesThatAreNoTextAreGarbage)
{
    for (const QByteArray &bytes : {QByteArray("\x89PNG\r\n\x1a\n=1\n"), QByteArray("a=1\n\0b=2\n", 9),
                                    QByteArray(4096, '\0'), QByteArray("a=\xc3")}) {
        const ParsedSettings settings = parseSettings(bytes);
        EXPECT_EQ(settings.condition, SettingsCondition::garbage) << bytes.toHex().left(40).constData();
        EXPECT_TRUE(settings.values.isEmpty());
    }
}

TEST(SettingsText, EditingChangesOneKeyOnly)
{
    const QByteArray before = "[General]\nLumenFold.a=1\nsomebody.else=\"x, y\"\n\n[window]\nwidth=5\n";
    const std::optional<QByteArray> after = editedSettings(before, QStringLiteral("LumenFold.a"), QVariant(2));
    ASSERT_TRUE(after);
    SettingsValues expected = parseSettings(before).values;
    expected[QStringLiteral("LumenFold.a")] = QStringLiteral("2");
    EXPECT_EQ(parseSettings(*after).values, expected);

    const std::optional<QByteArray> without = editedSettings(*after, QStringLiteral("LumenFold.a"), std::nullopt);
    ASSERT_TRUE(without);
    expected.remove(QStringLiteral("LumenFold.a"));
    EXPECT_EQ(parseSettings(*without).values, expected);
}

TEST(SettingsText, EditingBeginsFromNothing)
{
    const std::optional<QByteArray> text = editedSettings({}, QStringLiteral("LumenFold.a"), QVariant(true));
    EXPECT_EQ(text, QByteArray("[General]\nLumenFold.a=true\n"));
}

} // namespace
} // namespace lumenfold::test
