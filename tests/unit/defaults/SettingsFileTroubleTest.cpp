#include "platform/defaults/SettingsFileUserDefaults.h"

#include "tests/support/unit/LogWatch.h"
#include "tests/unit/defaults/SettingsTestFiles.h"

namespace lumenfold::test {
namespace {

class SettingsFileTroubleTest : public SettingsTestFiles {
protected:
    void expectTrouble(const QString &trouble, int times = 1) const
    {
        expectLogLine(QStringLiteral("LumenFold: the settings file %1 %2").arg(path(), trouble), times);
    }

    static void expectRefusedWrite(const QString &why, int times = 1)
    {
        expectLogLine(QStringLiteral("LumenFold: cannot save the setting %1: %2").arg(key, why), times);
    }

    void readManyTimes() const
    {
        for (int round = 0; round < 10; ++round) {
            EXPECT_FALSE(m_defaults.boolean(key));
            EXPECT_FALSE(m_defaults.string(key));
        }
    }

    SettingsFileUserDefaults m_defaults{path()};
};

TEST_F(SettingsFileTroubleTest, GarbageReadsAsNothingIsReportedOnceAndIsLeftAlone)
{
    const QByteArray garbage("\x7f"
                             "ELF\0\0LumenFold.value=true\n\xff\xfe",
                             30);
    putFile(garbage);
    expectTrouble(QStringLiteral("is no settings file, so the defaults count"));
    readManyTimes();
    expectRefusedWrite(QStringLiteral("The settings file is damaged and is left as it is"), 2);
    m_defaults.setBoolean(key, true);
    m_defaults.remove(key);
    EXPECT_EQ(fileContents(), garbage);
}

TEST_F(SettingsFileTroubleTest, ALetterInPlaceOfTheSettingsIsLeftAlone)
{
    const QByteArray letter = "Dear Sir,\nenclosed please find nothing.\n";
    putFile(letter);
    expectTrouble(QStringLiteral("is damaged; what cannot be read in it counts as not set"));
    readManyTimes();
    expectRefusedWrite(QStringLiteral("The settings file is damaged and is left as it is"));
    m_defaults.setBoolean(key, true);
    EXPECT_EQ(fileContents(), letter);
}

TEST_F(SettingsFileTroubleTest, ACutOffFileLosesItsLastLineOnly)
{
    putFile("[General]\nLumenFold.first=5\nLumenFold.va");
    expectTrouble(QStringLiteral("is cut off; its last line does not count"));
    readManyTimes();
    EXPECT_EQ(m_defaults.integer(QStringLiteral("LumenFold.first")), 5);
    m_defaults.setBoolean(key, true);
    EXPECT_TRUE(m_defaults.boolean(key));
    EXPECT_EQ(m_defaults.integer(QStringLiteral("LumenFold.first")), 5);
}

TEST_F(SettingsFileTroubleTest, AnEmptiedFileIsAnEmptyStore)
{
    putFile({});
    readManyTimes();
    m_defaults.setBoolean(key, true);
    EXPECT_TRUE(m_defaults.boolean(key));
}

TEST_F(SettingsFileTroubleTest, AFolderInPlaceOfTheFileIsReportedOnce)
{
    ASSERT_TRUE(QDir().mkdir(path()));
    expectTrouble(QStringLiteral("cannot be read, so the defaults count: Not a file"));
    readManyTimes();
    expectRefusedWrite(QStringLiteral("The settings file cannot be read: Not a file"));
    m_defaults.setBoolean(key, true);
    EXPECT_TRUE(QFileInfo(path()).isDir());
}

TEST_F(SettingsFileTroubleTest, AFileThatMayNotBeReadIsNotReplaced)
{
    const QByteArray contents = "[General]\nLumenFold.value=true\n";
    putFile(contents);
    ASSERT_TRUE(QFile::setPermissions(path(), {}));
    ASSERT_TRUE(QFile::setPermissions(m_folder.path(), QFile::Permissions(0x7777)));
    expectTrouble(QStringLiteral("cannot be read, so the defaults count: Permission denied"));
    expectRefusedWrite(QStringLiteral("The settings file cannot be read: Permission denied"));
    {
        const AsOrdinaryUser user;
        readManyTimes();
        m_defaults.setBoolean(key, false);
    }
    ASSERT_TRUE(QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner));
    EXPECT_EQ(fileContents(), contents);
}

TEST_F(SettingsFileTroubleTest, AReadOnlyFileIsReadAndNotReplaced)
{
    const QByteArray contents = "[General]\nLumenFold.value=true\n";
    putFile(contents);
    ASSERT_TRUE(QFile::setPermissions(path(), QFile::Permissions(0x4444)));
    ASSERT_TRUE(QFile::setPermissions(m_folder.path(), QFile::Permissions(0x5555)));
    {
        const AsOrdinaryUser user;
        EXPECT_TRUE(m_defaults.boolean(key));
        m_defaults.setBoolean(key, false);
        EXPECT_TRUE(m_defaults.boolean(key));
    }
    ASSERT_TRUE(QFile::setPermissions(m_folder.path(), QFile::Permissions(0x7700)));
    EXPECT_EQ(fileContents(), contents);
    const QStringList lines = logLines();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines.constFirst().startsWith(QStringLiteral("LumenFold: cannot save the setting LumenFold.value: ")));
    expectLogLine(lines.constFirst());
}

TEST_F(SettingsFileTroubleTest, ATroubleThatComesBackIsReportedAgain)
{
    expectTrouble(QStringLiteral("is no settings file, so the defaults count"), 2);
    putFile(QByteArray(8, '\0'));
    readManyTimes();
    putFile("[General]\nLumenFold.value=true\n");
    EXPECT_TRUE(m_defaults.boolean(key));
    putFile(QByteArray(8, '\0'));
    readManyTimes();
}

} // namespace
} // namespace lumenfold::test
