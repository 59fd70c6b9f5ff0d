#include "tests/components/http/HttpClientFixture.h"
#include "tests/support/desktop/Wait.h"

#include <QTcpServer>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;

using ::testing::AnyOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::SizeIs;

class BadServers : public HttpClientTest {
protected:
    /// With little patience.
    [[nodiscard]] HttpRequest hasty() const
    {
        HttpRequest request = get(QStringLiteral("/v1/user"));
        request.timeOut = 300ms;
        return request;
    }
};

TEST_F(BadServers, NobodyIsThere)
{
    QTcpServer closed;
    ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
    HttpRequest request = get(QStringLiteral("/"));
    request.address.setPort(closed.serverPort());
    closed.close();
    EXPECT_EQ(failureOf(request), Kind::unreachable);
    request.address = QUrl(QStringLiteral("http://nowhere.invalid/"));
    EXPECT_EQ(failureOf(request), Kind::unreachable);
}

TEST_F(BadServers, ASilentServerIsGivenUp)
{
    service.behave(Endpoint::user, {.way = Way::silence});
    EXPECT_EQ(failureOf(hasty()), Kind::timedOut);
    EXPECT_TRUE(waitFor([this] { return service.openConnections() == 0; }));
}

TEST_F(BadServers, AServerThatSendsNowAndThenAByteIsGivenUp)
{
    service.behave(Endpoint::user, {.way = Way::drip, .pause = 20ms});
    EXPECT_EQ(failureOf(hasty()), Kind::timedOut);
}

TEST_F(BadServers, ASlowAnswerInTimeIsOne)
{
    service.behave(Endpoint::user, {.way = Way::answer, .reply = ServiceReply{.body = "late"}, .pause = 100ms});
    const Ended ended = send(get(QStringLiteral("/v1/user")));
    ASSERT_TRUE(ended.answer);
    EXPECT_EQ(ended.answer->body, "late");
    service.behave(Endpoint::user, {.way = Way::drip, .reply = ServiceReply{.body = "drop by drop"}, .pause = 1ms});
    EXPECT_EQ(send(get(QStringLiteral("/v1/user"))).answer.value().body, "drop by drop");
}

TEST_F(BadServers, AnUploadThatNobodyReadsIsGivenUp)
{
    service.behave(Endpoint::storage, {.way = Way::stopReading});
    HttpRequest upload = put(QByteArray(20'000'000, 'p'));
    upload.timeOut = 500ms;
    EXPECT_EQ(failureOf(upload), Kind::timedOut);
}

TEST_F(BadServers, NoBodyIsSentTwice)
{
    service.behave(Endpoint::storage, {.way = Way::cut});
    EXPECT_EQ(failureOf(put("small")), Kind::cutOff);
    EXPECT_EQ(service.begun(Endpoint::storage), 1);
    EXPECT_THAT(failureOf(put(QByteArray(5'000'000, 'p'))), AnyOf(Kind::cutOff, Kind::other));
    EXPECT_EQ(service.begun(Endpoint::storage), 2);
    HttpRequest post = get(QStringLiteral("/v1/user/upload/signed-url"));
    post.method = HttpMethod::post;
    post.headers = {{"Content-Type", "application/json"}};
    post.body = "{}";
    service.behave(Endpoint::signedUrl, {.way = Way::cut});
    EXPECT_EQ(failureOf(post), Kind::cutOff);
    EXPECT_EQ(service.begun(Endpoint::signedUrl), 1);
}

TEST_F(BadServers, AConnectionThatEndsWithoutAnAnswerIsAFailure)
{
    service.behave(Endpoint::user, {.way = Way::cut});
    EXPECT_EQ(failureOf(get(QStringLiteral("/v1/user"))), Kind::cutOff);
}

TEST_F(BadServers, HalfAnAnswerIsNone)
{
    service.behave(Endpoint::user, {.way = Way::cutHalfway, .reply = ServiceReply{.body = QByteArray(1000, 'h')}});
    EXPECT_EQ(failureOf(get(QStringLiteral("/v1/user"))), Kind::cutOff);
}

TEST_F(BadServers, WhatIsNotHttpIsNoAnswer)
{
    service.behave(Endpoint::user, {.way = Way::nonsense});
    EXPECT_EQ(failureOf(hasty()), Kind::cutOff);
}

TEST_F(BadServers, AnAnswerWithoutEndIsGivenUp)
{
    service.behave(Endpoint::user, {.reply = ServiceReply{.padding = 100'000'000}});
    EXPECT_EQ(failureOf(get(QStringLiteral("/v1/user"))), Kind::tooLarge);
    HttpRequest small = get(QStringLiteral("/v1/user"));
    small.maximumAnswerBytes = 10;
    service.behave(Endpoint::user, answering(200, "0123456789"));
    EXPECT_EQ(send(small).answer.value().body, "0123456789");
    service.behave(Endpoint::user, answering(200, "0123456789a"));
    EXPECT_EQ(failureOf(small), Kind::tooLarge);
    service.behave(Endpoint::user, answering(500, "0123456789a"));
    EXPECT_EQ(failureOf(small), Kind::tooLarge);
}

TEST_F(BadServers, AnAnswerThatUnpacksWithoutEndIsGivenUp)
{
    // The toolkit's own compression is that of the encoding, behind four bytes of its own.
    const QByteArray packed = qCompress(QByteArray(100'000'000, ' ')).mid(4);
    service.behave(Endpoint::user,
                   {.reply = ServiceReply{.headers = {{"Content-Encoding", "deflate"}}, .body = packed}});
    EXPECT_EQ(failureOf(get(QStringLiteral("/v1/user"))), Kind::other);
}

TEST_F(BadServers, ACompressedAnswerIsRead)
{
    service.behave(Endpoint::user, {.reply = ServiceReply{.headers = {{"Content-Encoding", "deflate"}},
                                                          .body = qCompress("packed").mid(4)}});
    EXPECT_EQ(send(get(QStringLiteral("/v1/user"))).answer.value().body, "packed");
}

TEST_F(BadServers, AnEmptyAnswerIsOne)
{
    service.behave(Endpoint::user, answering(200));
    const Ended ended = send(get(QStringLiteral("/v1/user")));
    ASSERT_TRUE(ended.answer);
    EXPECT_EQ(ended.answer->body, "");
}

TEST_F(BadServers, FailuresNameNeitherTheAddressNorTheKey)
{
    HttpRequest request = hasty();
    request.address = service.url(QStringLiteral("/v1/user?signature=sesame"));
    request.headers = {{"Authorization", "ApiKey secret"}};
    for (const Way way : {Way::silence, Way::cut, Way::cutHalfway, Way::nonsense}) {
        service.behave(Endpoint::user, {.way = way});
        const Ended ended = send(request);
        ASSERT_TRUE(ended.error);
        EXPECT_THAT(ended.error->what(), Not(AnyOf(HasSubstr("sesame"), HasSubstr("secret"), HasSubstr("127"))));
    }
}

} // namespace
} // namespace lumenfold::test
