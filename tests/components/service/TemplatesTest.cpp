#include "tests/components/service/ServiceFixture.h"

namespace lumenfold::test {
namespace {

using ::testing::SizeIs;

using ServiceTemplatesTest = ServiceTest;

TEST_F(ServiceTemplatesTest, TheListIsAskedForWithTheKey)
{
    online.change([](ServiceProtocol &protocol) { protocol.templateCount = 3; });
    const auto ending = fetchTemplates();
    ASSERT_TRUE(ending.result) << qPrintable(ending.text());
    ASSERT_THAT(*ending.result, SizeIs(3));
    EXPECT_EQ(ending.result->at(0).id, QStringLiteral("template-1"));
    EXPECT_EQ(ending.result->at(2).name, QStringLiteral("Template 3"));
    ASSERT_THAT(online.requests(), SizeIs(1));
    EXPECT_EQ(online.requests()[0].method, "GET");
    EXPECT_EQ(online.requests()[0].target, "/v1/templates");
    EXPECT_EQ(online.requests()[0].header("Authorization"), "ApiKey demo-key");
    EXPECT_EQ(online.requests()[0].body, "");
}

TEST_F(ServiceTemplatesTest, ARefusedKeySignsOut)
{
    int posts = 0;
    const auto observation =
        notifications.observe(AuthService::authStateChangedNotification, [&posts](const Notification &) { ++posts; });
    online.behave(Endpoint::templates, answering(403));
    EXPECT_EQ(fetchTemplates().serviceError.value().kind(), Kind::notAuthenticated);
    EXPECT_FALSE(auth.isSignedIn());
    queue.runPosted();
    EXPECT_GE(posts, 1);
    EXPECT_EQ(fetchTemplates().serviceError.value().kind(), Kind::notAuthenticated);
    EXPECT_THAT(online.requests(), SizeIs(1));
}

TEST_F(ServiceTemplatesTest, WhatIsMissingIsFilledInAndAMissingIdSpoilsAll)
{
    online.behave(Endpoint::templates, answering(200, R"({"templates":[{"_id":"1"},{"_id":"2","previewUrl":5}]})"));
    const auto ending = fetchTemplates();
    ASSERT_TRUE(ending.result);
    EXPECT_EQ(ending.result->at(0).name, QStringLiteral("Untitled template"));
    EXPECT_EQ(ending.result->at(1).previewUrl, std::nullopt);

    online.behave(Endpoint::templates, answering(200, R"({"templates":[{"_id":"1"},{"name":"2"}]})"));
    EXPECT_EQ(fetchTemplates().serviceError.value().kind(), Kind::decoding);
}

TEST_F(ServiceTemplatesTest, ABrokenListCannotBeRead)
{
    for (const QByteArray &body : {QByteArray(), QByteArray("<html>"), QByteArray("{\"templates\":["), QByteArray("[]"),
                                   QByteArray(R"({"templates":5})"), QByteArray("{\"templates\":[{\"_id\":\"\xff\"}]}"),
                                   QByteArray(500'000, '['), QByteArray("{\"templates\":").repeated(3000)}) {
        online.behave(Endpoint::templates, answering(200, body));
        EXPECT_EQ(fetchTemplates().serviceError.value().kind(), Kind::decoding) << body.left(30).constData();
    }
}

TEST_F(ServiceTemplatesTest, FiveThousandAreRead)
{
    online.change([](ServiceProtocol &protocol) { protocol.templateCount = 5000; });
    EXPECT_THAT(fetchTemplates().result.value(), SizeIs(5000));
}

TEST_F(ServiceTemplatesTest, AHundredMegabytesAreNot)
{
    online.behave(Endpoint::templates, {.reply = ServiceReply{.body = R"({"templates":[]})", .padding = 100'000'000}});
    EXPECT_EQ(fetchTemplates().transportError.value().kind(), TransportError::Kind::tooLarge);
}

TEST_F(ServiceTemplatesTest, AFailureIsSaidInTheServersWords)
{
    online.behave(Endpoint::templates, answering(500, "no\ndatabase"));
    EXPECT_EQ(fetchTemplates().text(), QStringLiteral("Server returned 500: no\ndatabase"));
    online.behave(Endpoint::templates, redirectingTo("http://127.0.0.1:1/elsewhere"));
    EXPECT_EQ(fetchTemplates().text(), QStringLiteral("Server returned 302: "));
}

TEST_F(ServiceTemplatesTest, TheListIsDroppedWhenNobodyWaitsForIt)
{
    auto ending = std::make_shared<Ending<Templates>>();
    online.behave(Endpoint::templates, {.way = Way::silence});
    note(service->fetchTemplates(), ending);
    waitUntil("the request", [this] { return online.begun(Endpoint::templates) == 1; });
    service.reset();
    httpOfService.reset();
    EXPECT_EQ(ending->transportError.value().kind(), TransportError::Kind::cancelled);
}

} // namespace
} // namespace lumenfold::test
