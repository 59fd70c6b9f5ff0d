#include "platform/files/XdgFileManager.h"

#include <gtest/gtest.h>

namespace lumenfold {
namespace {

using namespace Qt::StringLiterals;

class XdgDataHome : public ::testing::Test {
protected:
    void TearDown() override
    {
        m_isSet ? qputenv(name, m_before) : qunsetenv(name);
        qputenv("HOME", m_homeBefore);
    }

    static constexpr auto name = "XDG_DATA_HOME";
    const bool m_isSet = qEnvironmentVariableIsSet(name);
    const QByteArray m_before = qgetenv(name);
    const QByteArray m_homeBefore = qgetenv("HOME");
};

TEST_F(XdgDataHome, isWhereProgramsKeepWhatTheyNeed)
{
    qputenv(name, "/somewhere/data");
    EXPECT_EQ(XdgFileManager().applicationSupportDirectory(), u"/somewhere/data"_s);
}

TEST_F(XdgDataHome, isInTheHomeFolderUnlessItIsNamed)
{
    qputenv("HOME", "/somewhere/home");
    for (const char *unusable : {"", "data", "./data"}) {
        qputenv(name, unusable);
        const auto directory = XdgFileManager().applicationSupportDirectory();
        EXPECT_TRUE(directory == u"/somewhere/home/.local/share"_s || (*unusable != '\0' && !directory)) << unusable;
    }
    qunsetenv(name);
    EXPECT_EQ(XdgFileManager().applicationSupportDirectory(), u"/somewhere/home/.local/share"_s);
}

TEST(XdgCacheHome, isWhereProgramsKeepWhatTheyCanDoWithout)
{
    const QByteArray before = qgetenv("XDG_CACHE_HOME");
    qputenv("XDG_CACHE_HOME", "/somewhere/cache");
    EXPECT_EQ(XdgFileManager().cachesDirectory(), u"/somewhere/cache"_s);
    before.isEmpty() ? qunsetenv("XDG_CACHE_HOME") : qputenv("XDG_CACHE_HOME", before);
}

} // namespace
} // namespace lumenfold
