#include "platform/updates/SoftwareVersion.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace lumenfold::test {
namespace {

SoftwareVersion version(const char *text)
{
    const auto parsed = SoftwareVersion::parse(QString::fromLatin1(text));
    EXPECT_TRUE(parsed) << text;
    return parsed.value_or(*SoftwareVersion::parse(u"0"));
}

TEST(SoftwareVersion, EachIsNewerThanAllBeforeIt)
{
    const QList<const char *> ascending{
        "0",
        "0.0.1",
        "0.9",
        "0.10-1",
        "0.10-2",
        "0.10-11",
        "0.10-alpha",
        "0.10-alpha.1",
        "0.10-alpha.beta",
        "0.10-beta",
        "0.10-beta.2",
        "0.10-beta.11",
        "0.10-rc.1",
        "0.10",
        "1.0.0-rc.1",
        "1",
        "1.0.0.1",
        "1.0.1",
        "1.2",
        "1.10",
        "2",
        "2024.1",
        "18446744073709551616.0",
        "18446744073709551617.0",
        "99999999999999999999999999999999",
    };
    for (qsizetype older = 0; older < ascending.size(); ++older) {
        for (qsizetype newer = older + 1; newer < ascending.size(); ++newer) {
            EXPECT_LT(version(ascending[older]), version(ascending[newer]))
                << ascending[older] << ' ' << ascending[newer];
            EXPECT_GT(version(ascending[newer]), version(ascending[older]))
                << ascending[newer] << ' ' << ascending[older];
        }
    }
}

TEST(SoftwareVersion, ManyWaysToWriteOne)
{
    for (const char *text :
         {"1.4", "1.4.0", "1.4.0.0.0", "v1.4", "V1.4.0", "01.04", "1.4+build.7", "1.4.0+debian1-2"}) {
        EXPECT_EQ(version(text), version("1.4")) << text;
        EXPECT_FALSE(version(text).isPreliminary());
    }
    EXPECT_EQ(version("1.4-rc.1+a"), version("1.4.0-rc.01+b"));
    EXPECT_TRUE(version("1.4-rc.1").isPreliminary());
}

TEST(SoftwareVersion, OtherTextsAreNone)
{
    for (const char *text :
         {"",    "v",  ".",      "1.", ".1", "1..2",     "a",   "1.a", "1.2b",  "-1",  "1-", "1-.", "1-a..b",
          "1-ä", "1+", "1+a..b", "1 ", " 1", "1.2 beta", "1,2", "1_2", "1-a_b", "vv1", "--", "+",   "1.2.3-\n"}) {
        EXPECT_FALSE(SoftwareVersion::parse(QString::fromUtf8(text))) << text;
    }
    EXPECT_FALSE(SoftwareVersion::parse(QStringLiteral("١.٢")));
    EXPECT_FALSE(SoftwareVersion::parse(QString(101, u'1')));
    EXPECT_TRUE(SoftwareVersion::parse(QString(100, u'1')));
}

} // namespace
} // namespace lumenfold::test
