#include "editor/bridge/EditorOrigin.h"

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

QUrl url(const char *text)
{
    return QUrl(QString::fromUtf8(text));
}

TEST(EditorOriginTest, IsSchemeAndHostAndThePortThatIsNamed)
{
    EXPECT_EQ(editorOrigin(url("https://www.example.org/some/path?query#fragment")),
              QStringLiteral("https://www.example.org"));
    EXPECT_EQ(editorOrigin(url("https://www.example.org:8443/")), QStringLiteral("https://www.example.org:8443"));
    EXPECT_EQ(editorOrigin(url("https://www.example.org:443")), QStringLiteral("https://www.example.org:443"));
    EXPECT_EQ(editorOrigin(url("http://127.0.0.1:80")), QStringLiteral("http://127.0.0.1:80"));
}

TEST(EditorOriginTest, IsEmptyWithoutASchemeOrAHost)
{
    EXPECT_EQ(editorOrigin(url("")), QString());
    EXPECT_EQ(editorOrigin(url("www.example.org/path")), QString());
    EXPECT_EQ(editorOrigin(url("//www.example.org")), QString());
    EXPECT_EQ(editorOrigin(url("https:///path")), QString());
    EXPECT_EQ(editorOrigin(url("mailto:someone@example.org")), QString());
}

TEST(EditorOriginTest, IsWrittenAsPagesSeeIt)
{
    EXPECT_EQ(editorOrigin(url("https://bücher.example")), QStringLiteral("https://xn--bcher-kva.example"));
    EXPECT_EQ(editorOrigin(url("http://[::1]:8080/")), QStringLiteral("http://[::1]:8080"));
}

TEST(EditorOriginTest, NothingInItEndsAStringOfAScript)
{
    for (const char *address : {"https://a'b.example", "https://a\\b.example", "https://a%27b.example"}) {
        const QString origin = editorOrigin(url(address));
        EXPECT_FALSE(origin.contains(u'\'') || origin.contains(u'\\')) << qPrintable(origin);
    }
}

TEST(TrustTest, AnOriginIsTrustedWhenProtocolHostAndPortAreTheEditors)
{
    const QUrl base = url("https://www.example.org/path");
    const QString https = QStringLiteral("https");
    const QString host = QStringLiteral("www.example.org");
    EXPECT_TRUE(isTrustedOrigin({https, host, 0}, base));
    EXPECT_TRUE(isTrustedOrigin({https, host, 443}, base));
    EXPECT_FALSE(isTrustedOrigin({https, host, 8443}, base));
    EXPECT_FALSE(isTrustedOrigin({QStringLiteral("http"), host, 443}, base));
    EXPECT_FALSE(isTrustedOrigin({https, QStringLiteral("example.org"), 0}, base));
    EXPECT_FALSE(isTrustedOrigin({https, QStringLiteral("www.example.org.evil.example"), 0}, base));
    EXPECT_FALSE(isTrustedOrigin({https, QStringLiteral("WWW.example.org"), 0}, base));
    EXPECT_FALSE(isTrustedOrigin({}, base));
}

TEST(TrustTest, WithAPortOfItsOwnTheDefaultPortIsNotTheEditors)
{
    const QUrl base = url("https://www.example.org:8443");
    const QString host = QStringLiteral("www.example.org");
    EXPECT_FALSE(isTrustedOrigin({QStringLiteral("https"), host, 0}, base));
    EXPECT_TRUE(isTrustedOrigin({QStringLiteral("https"), host, 8443}, base));
    EXPECT_FALSE(isTrustedAddress(url("https://www.example.org/"), base));
    EXPECT_TRUE(isTrustedAddress(url("https://www.example.org:8443/elsewhere"), base));
}

TEST(TrustTest, EverySchemeButHttpsHasPort80)
{
    EXPECT_TRUE(isTrustedOrigin({QStringLiteral("http"), QStringLiteral("h"), 0}, url("http://h:80")));
    EXPECT_TRUE(isTrustedAddress(url("other://h:80/"), url("other://h")));
    EXPECT_FALSE(isTrustedAddress(url("other://h:443/"), url("other://h")));
}

TEST(TrustTest, AnAddressIsTrustedOnTheEditorsOrigin)
{
    const QUrl base = url("https://www.example.org");
    EXPECT_TRUE(isTrustedAddress(url("https://www.example.org:443/integration/electron?apiKey=1"), base));
    EXPECT_FALSE(isTrustedAddress(url("http://www.example.org/"), base));
    EXPECT_FALSE(isTrustedAddress(url("https://example.org/"), base));
    EXPECT_FALSE(isTrustedAddress(url("https://www.example.org@evil.example/"), base));
    EXPECT_FALSE(isTrustedAddress(url("about:blank"), base));
    EXPECT_FALSE(isTrustedAddress(url("data:text/html,hello"), base));
    EXPECT_FALSE(isTrustedAddress(QUrl(), base));
}

TEST(TrustTest, WithoutABaseNothingIsTrusted)
{
    for (const char *base : {"", "www.example.org", "https:", "file:///home"}) {
        EXPECT_FALSE(isTrustedOrigin({}, url(base))) << base;
        EXPECT_FALSE(isTrustedOrigin({QStringLiteral("https"), QString(), 443}, url(base))) << base;
        EXPECT_FALSE(isTrustedAddress(url(base), url(base))) << base;
    }
}

TEST(SecurityOriginTest, IsReadFromWhatPagesSee)
{
    EXPECT_EQ(readSecurityOrigin(QStringLiteral("https://www.example.org")),
              (SecurityOrigin{QStringLiteral("https"), QStringLiteral("www.example.org"), 0}));
    EXPECT_EQ(readSecurityOrigin(QStringLiteral("http://127.0.0.1:8080")),
              (SecurityOrigin{QStringLiteral("http"), QStringLiteral("127.0.0.1"), 8080}));
}

TEST(SecurityOriginTest, WhatIsNoOriginIsNobodys)
{
    for (const char *text : {"null", "", "https://", "file://", "https://www.example.org/", "https://a@www.example.org",
                             "https://www.example.org?", "https://www.example.org#x", "blob:https://www.example.org/1",
                             "https://www.example.org:99999", "https://exa mple.org", " https://www.example.org"}) {
        EXPECT_EQ(readSecurityOrigin(QString::fromUtf8(text)), SecurityOrigin{}) << text;
    }
}

} // namespace
} // namespace lumenfold::test
