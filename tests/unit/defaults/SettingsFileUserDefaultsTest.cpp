#include "platform/defaults/SettingsFileUserDefaults.h"

#include "tests/unit/defaults/SettingsTestFiles.h"

#include <QSettings>
#include <QSize>

#include <cmath>
#include <limits>

namespace lumenfold::test {
namespace {

class SettingsFileUserDefaultsTest : public SettingsTestFiles {
protected:
    /// The file holds this one setting, written as another program would.
    void putValue(const QByteArray &text) const { putFile("[General]\nLumenFold.value=" + text + "\n"); }

    SettingsFileUserDefaults m_defaults{path()};
};

TEST_F(SettingsFileUserDefaultsTest, AnEmptyStoreHoldsNothingAndMakesNoFile)
{
    EXPECT_FALSE(m_defaults.contains(key));
    EXPECT_FALSE(m_defaults.string(key));
    EXPECT_FALSE(m_defaults.boolean(key));
    EXPECT_EQ(m_defaults.integer(key), 0);
    EXPECT_FALSE(m_defaults.numbers(key));
    EXPECT_FALSE(m_defaults.data(key));
    m_defaults.remove(key);
    EXPECT_TRUE(filesInFolder().isEmpty());
}

TEST_F(SettingsFileUserDefaultsTest, WhatIsWrittenIsReadByAnotherStoreOfTheSameFile)
{
    const QString awkward = QStringLiteral("/media/a b, c; \"d\" = %25 \\ ⌥⌘1 @ByteArray(x)");
    const QByteArray bytes("{\"display\":\"\xe2\x8c\xa5\"}\0\n\xff", 20);
    const std::vector<double> numbers{0.1, -3000.5, 1e-17, 300};
    m_defaults.setString(QStringLiteral("s"), awkward);
    m_defaults.setString(QStringLiteral("at"), QStringLiteral("@ByteArray(x)"));
    m_defaults.setString(QStringLiteral("empty"), QString());
    m_defaults.setBoolean(QStringLiteral("b"), true);
    m_defaults.setInteger(QStringLiteral("i"), std::numeric_limits<qint64>::min());
    m_defaults.setNumbers(QStringLiteral("n"), numbers);
    m_defaults.setNumbers(QStringLiteral("none"), {});
    m_defaults.setNumbers(QStringLiteral("one"), {7.5});
    m_defaults.setData(QStringLiteral("d"), bytes);
    m_defaults.setData(QStringLiteral("e"), QByteArray());

    const SettingsFileUserDefaults other(path());
    EXPECT_EQ(other.string(QStringLiteral("s")), awkward);
    EXPECT_EQ(other.string(QStringLiteral("at")), QStringLiteral("@ByteArray(x)"));
    EXPECT_EQ(other.string(QStringLiteral("empty")), QString());
    EXPECT_TRUE(other.boolean(QStringLiteral("b")));
    EXPECT_EQ(other.integer(QStringLiteral("i")), std::numeric_limits<qint64>::min());
    EXPECT_EQ(other.numbers(QStringLiteral("n")), numbers);
    EXPECT_EQ(other.numbers(QStringLiteral("none")), std::vector<double>());
    EXPECT_EQ(other.numbers(QStringLiteral("one")), std::vector{7.5});
    EXPECT_EQ(other.data(QStringLiteral("d")), bytes);
    EXPECT_EQ(other.data(QStringLiteral("e")), QByteArray());
    EXPECT_EQ(filesInFolder(), QStringList{QStringLiteral("LumenFold.conf")});
}

TEST_F(SettingsFileUserDefaultsTest, RemovingForgets)
{
    m_defaults.setBoolean(key, true);
    EXPECT_TRUE(m_defaults.contains(key));
    m_defaults.remove(key);
    EXPECT_FALSE(m_defaults.contains(key));
    EXPECT_FALSE(SettingsFileUserDefaults(path()).contains(key));
}

TEST_F(SettingsFileUserDefaultsTest, BooleansAreTheseFourWords)
{
    for (const char *text : {"true", "1", "True", "TRUE"}) {
        putValue(text);
        EXPECT_TRUE(m_defaults.boolean(key)) << text;
    }
    for (const char *text : {"false", "0", "2", "yes", "", "true, true", "@ByteArray(true)", "truee"}) {
        putValue(text);
        EXPECT_FALSE(m_defaults.boolean(key)) << text;
    }
}

TEST_F(SettingsFileUserDefaultsTest, IntegersAreWholeNumbers)
{
    putValue("-12");
    EXPECT_EQ(m_defaults.integer(key), -12);
    putValue("4294967296");
    EXPECT_EQ(m_defaults.integer(key), 4294967296);
    for (const char *text : {"12.0", "1e3", "0x10", "twelve", "", "1, 2", "@ByteArray(12)", "9223372036854775808"}) {
        putValue(text);
        EXPECT_EQ(m_defaults.integer(key), 0) << text;
    }
}

TEST_F(SettingsFileUserDefaultsTest, NumbersAreAListOfNumbersOnly)
{
    putValue("10, 20, 300, 200");
    EXPECT_EQ(m_defaults.numbers(key), (std::vector<double>{10, 20, 300, 200}));
    putValue("10.5,-20,3e2");
    EXPECT_EQ(m_defaults.numbers(key), (std::vector<double>{10.5, -20, 300}));
    for (const char *text :
         {"10, 20, abc", "10, , 20", "nan, 1", "1, inf", "\"10, 20\"", "@ByteArray(10)", "", "1e999, 2"}) {
        putValue(text);
        EXPECT_FALSE(m_defaults.numbers(key)) << text;
    }
}

TEST_F(SettingsFileUserDefaultsTest, TextIsNoDataAndDataIsNoText)
{
    putValue("{}");
    EXPECT_FALSE(m_defaults.data(key));
    EXPECT_EQ(m_defaults.string(key), QStringLiteral("{}"));
    putValue("@ByteArray({})");
    EXPECT_EQ(m_defaults.data(key), QByteArray("{}"));
    EXPECT_FALSE(m_defaults.string(key));
    // Broken off before its end.
    putValue("@ByteArray({");
    EXPECT_FALSE(m_defaults.data(key));
    putValue("a, b");
    EXPECT_FALSE(m_defaults.string(key));
    EXPECT_TRUE(m_defaults.contains(key));
}

TEST_F(SettingsFileUserDefaultsTest, EveryReadSeesWhatAnotherProgramWrote)
{
    m_defaults.setBoolean(QStringLiteral("LumenFold.mine"), true);
    for (int round = 0; round < 50; ++round) {
        {
            QSettings other(path(), QSettings::IniFormat);
            other.setValue(key, 100 + round);
        }
        ASSERT_EQ(m_defaults.integer(key), 100 + round);
    }
    EXPECT_TRUE(m_defaults.boolean(QStringLiteral("LumenFold.mine")));
}

TEST_F(SettingsFileUserDefaultsTest, AWriteKeepsWhatAnotherProgramHasJustWritten)
{
    EXPECT_FALSE(m_defaults.contains(key));
    putFile("[General]\nforeign=\"x, y\"\nLumenFold.value=old\n\n[window]\nsize=@Size(3 4)\n");
    m_defaults.setString(key, QStringLiteral("new"));
    const QSettings other(path(), QSettings::IniFormat);
    EXPECT_EQ(other.value(QStringLiteral("foreign")), QStringLiteral("x, y"));
    EXPECT_EQ(other.value(key), QStringLiteral("new"));
    EXPECT_EQ(other.value(QStringLiteral("window/size")).toSize(), QSize(3, 4));
}

TEST_F(SettingsFileUserDefaultsTest, TheStandardPlaceIsInTheFolderForConfiguration)
{
    EXPECT_TRUE(SettingsFileUserDefaults::standardPath().endsWith(u"/LumenFold/LumenFold.conf"));
    EXPECT_TRUE(QDir::isAbsolutePath(SettingsFileUserDefaults::standardPath()));
}

} // namespace
} // namespace lumenfold::test
