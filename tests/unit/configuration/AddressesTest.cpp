#include "app/configuration/Addresses.h"

#include <QUrlQuery>

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

QString appended(const QString &base, const QString &component)
{
    return appendingPathComponent(QUrl(base), component).toString(QUrl::FullyEncoded);
}

TEST(Addresses, ExactlyOneSlashStandsBetweenBaseAndComponent)
{
    const QString expected = QStringLiteral("https://api.example/v1/user");
    EXPECT_EQ(appended(QStringLiteral("https://api.example"), QStringLiteral("/v1/user")), expected);
    EXPECT_EQ(appended(QStringLiteral("https://api.example/"), QStringLiteral("/v1/user")), expected);
    EXPECT_EQ(appended(QStringLiteral("https://api.example"), QStringLiteral("v1/user")), expected);
    EXPECT_EQ(appended(QStringLiteral("https://api.example/"), QStringLiteral("v1/user")), expected);
}

TEST(Addresses, TheBaseKeepsItsPathPortAndQuery)
{
    EXPECT_EQ(appended(QStringLiteral("http://localhost:8080/proxy%20a/"), QStringLiteral("/v1/user")),
              QStringLiteral("http://localhost:8080/proxy%20a/v1/user"));
    EXPECT_EQ(appended(QStringLiteral("https://api.example?key=1"), QStringLiteral("/v1/user")),
              QStringLiteral("https://api.example/v1/user?key=1"));
}

TEST(Addresses, ABaseNeedsNeitherSchemeNorHost)
{
    EXPECT_EQ(appended(QStringLiteral("somewhere"), QStringLiteral("/v1/user")), QStringLiteral("somewhere/v1/user"));
}

TEST(Addresses, QueryItemsComeOutAsTheyWentIn)
{
    const QString awkward = QStringLiteral("https://x.example/a b+c%20d.png?q=1&r=ü#part;=\"<>\\");
    const QUrl url =
        withQueryItems(QUrl(QStringLiteral("https://www.example/studio")), {{QStringLiteral("src"), awkward}});
    EXPECT_TRUE(url.isValid());
    EXPECT_FALSE(url.hasFragment());
    const QUrlQuery query(url);
    ASSERT_EQ(query.queryItems().size(), 1);
    EXPECT_EQ(query.queryItemValue(QStringLiteral("src"), QUrl::FullyDecoded), awkward);
    // Form decoders take a bare plus for a blank.
    EXPECT_FALSE(url.query(QUrl::FullyEncoded).contains(u'+'));
}

TEST(Addresses, QueryItemsKeepTheirOrderAndReplaceAnEarlierQuery)
{
    const QUrl url = withQueryItems(QUrl(QStringLiteral("https://www.example/studio?old=1")),
                                    {{QStringLiteral("src"), QStringLiteral("https://x.example/a.png")},
                                     {QStringLiteral("id"), QStringLiteral("7")}});
    EXPECT_EQ(url.toString(QUrl::FullyEncoded),
              QStringLiteral("https://www.example/studio?src=https://x.example/a.png&id=7"));
    EXPECT_FALSE(withQueryItems(url, {}).hasQuery());
}

TEST(Addresses, AnOverrideIsAnyTextThatIsAnAddress)
{
    EXPECT_EQ(overridingURL(QStringLiteral("https://other.example")), QUrl(QStringLiteral("https://other.example")));
    EXPECT_EQ(overridingURL(QStringLiteral("other")), QUrl(QStringLiteral("other")));
    EXPECT_FALSE(overridingURL(std::nullopt));
    EXPECT_FALSE(overridingURL(QString()));
}

class NoAddress : public ::testing::TestWithParam<const char16_t *> {};

TEST_P(NoAddress, IsNoOverride)
{
    EXPECT_FALSE(overridingURL(QString::fromUtf16(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(Texts, NoAddress,
                         ::testing::Values(u"not an address", u"http://exa mple", u"https://[::1", u"http://host:port",
                                           u"https://%zz", u" ", u"\n", u"http://a/<b>"));

} // namespace
} // namespace lumenfold::test
