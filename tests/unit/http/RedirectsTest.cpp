#include "service/http/Redirects.h"

#include <gmock/gmock.h>

namespace lumenfold {
namespace {

QUrl url(const char *text)
{
    return QUrl(QString::fromUtf8(text), QUrl::StrictMode);
}

HttpAnswer redirect(int status, const char *location)
{
    return {.status = status, .headers = {{"Location", location}}};
}

HttpRequest withKey()
{
    return {.address = url("https://api.example/v1/user"), .headers = {{"Authorization", "ApiKey secret"}}};
}

HttpRequest upload(HttpMethod method = HttpMethod::put)
{
    return {.address = url("https://storage.example/a?signature=s"),
            .method = method,
            .headers = {{"Content-Type", "image/png"}},
            .body = "bytes"};
}

TEST(Redirects, AnOriginIsSchemeHostAndPort)
{
    EXPECT_TRUE(isSameOrigin(url("https://a.example/x"), url("https://a.example:443/y?z")));
    EXPECT_TRUE(isSameOrigin(url("http://a.example:80"), url("http://a.example")));
    EXPECT_TRUE(isSameOrigin(url("https://A.EXAMPLE"), url("https://a.example")));
    EXPECT_FALSE(isSameOrigin(url("https://a.example"), url("http://a.example")));
    EXPECT_FALSE(isSameOrigin(url("https://a.example"), url("https://b.a.example")));
    EXPECT_FALSE(isSameOrigin(url("https://a.example"), url("https://a.example:8443")));
    EXPECT_FALSE(isSameOrigin(url("https://a.example"), url("https://a.example.evil.example")));
}

TEST(Redirects, TheKeyGoesAlongWithinTheOrigin)
{
    const auto next = redirected(withKey(), redirect(302, "/v2/user?all=1"));
    ASSERT_TRUE(next);
    EXPECT_EQ(next->address, url("https://api.example/v2/user?all=1"));
    EXPECT_EQ(next->headers, withKey().headers);
}

TEST(Redirects, ARequestWithAKeyIsNotFollowedAnywhereElse)
{
    for (const char *elsewhere : {"https://evil.example/v1/user", "//evil.example/", "http://api.example/v1/user",
                                  "https://api.example:8443/v1/user", "https://api.example@evil.example/"}) {
        EXPECT_FALSE(redirected(withKey(), redirect(302, elsewhere))) << elsewhere;
        EXPECT_FALSE(redirected(withKey(), redirect(307, elsewhere))) << elsewhere;
    }
    HttpRequest inOtherLetters = withKey();
    inOtherLetters.headers = {{"AUTHORIZATION", "ApiKey secret"}};
    EXPECT_FALSE(redirected(inOtherLetters, redirect(302, "https://evil.example/")));
}

TEST(Redirects, AnUploadWithoutAKeyMayGoToAnotherServer)
{
    const auto next = redirected(upload(), redirect(307, "https://region.example/a?signature=t"));
    ASSERT_TRUE(next);
    EXPECT_EQ(next->method, HttpMethod::put);
    EXPECT_EQ(next->body, "bytes");
    EXPECT_EQ(next->address, url("https://region.example/a?signature=t"));
}

TEST(Redirects, NothingSecureGoesToAnInsecureServer)
{
    EXPECT_FALSE(redirected(upload(), redirect(307, "http://storage.example/a")));
    HttpRequest plain = upload();
    plain.address = url("http://storage.example/a");
    EXPECT_TRUE(redirected(plain, redirect(307, "http://other.example/a")));
    EXPECT_TRUE(redirected(plain, redirect(307, "https://other.example/a")));
}

TEST(Redirects, OnlyServersAreFollowed)
{
    for (const char *target :
         {"file:///etc/passwd", "data:text/plain,x", "ftp://storage.example/a", "https:///a", "javascript:alert(1)"}) {
        EXPECT_FALSE(redirected(upload(), redirect(307, target))) << target;
    }
}

TEST(Redirects, TheStatusSaysWhatBecomesOfTheMethod)
{
    using enum HttpMethod;
    struct Row {
        HttpMethod method;
        int status;
        HttpMethod then;
    };
    for (const Row &row : {Row{post, 301, get}, Row{post, 302, get}, Row{post, 303, get}, Row{post, 307, post},
                           Row{post, 308, post}, Row{put, 301, put}, Row{put, 302, put}, Row{put, 303, get},
                           Row{put, 307, put}, Row{put, 308, put}, Row{get, 301, get}}) {
        const auto next = redirected(upload(row.method), redirect(row.status, "/b"));
        ASSERT_TRUE(next) << row.status;
        EXPECT_EQ(next->method, row.then) << row.status;
        EXPECT_EQ(next->body.isEmpty(), row.then == get && row.method != get) << row.status;
    }
    EXPECT_TRUE(redirected(upload(post), redirect(303, "/b"))->headers.empty());
}

TEST(Redirects, OtherAnswersAreNone)
{
    for (const int status : {200, 201, 300, 304, 305, 306, 400, 401, 500}) {
        EXPECT_FALSE(redirected(upload(), redirect(status, "/b"))) << status;
    }
    EXPECT_FALSE(redirected(upload(), {.status = 302}));
    EXPECT_FALSE(redirected(upload(), redirect(302, "https://[")));
}

} // namespace
} // namespace lumenfold
