#include "tests/components/http/HttpClientFixture.h"
#include "tests/support/desktop/Wait.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

namespace lumenfold::test {
namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

TEST_F(HttpClientTest, AnAnswerHasItsStatusItsHeadersAndItsBody)
{
    service.behave(Endpoint::user,
                   {.reply = ServiceReply{.status = 418, .headers = {{"X-Tea", "green"}}, .body = "short and stout"}});
    const Ended ended = send(get(QStringLiteral("/v1/user")));
    ASSERT_TRUE(ended.answer) << ended.error->what();
    EXPECT_EQ(ended.answer->status, 418);
    EXPECT_EQ(headerNamed("x-tea", ended.answer->headers), "green");
    EXPECT_EQ(ended.answer->body, "short and stout");
    EXPECT_TRUE(ended.onSameThread);
}

TEST_F(HttpClientTest, EveryStatusIsAnAnswer)
{
    for (const int status : {200, 201, 204, 299, 304, 400, 401, 402, 403, 404, 405,
                             407, 409, 410, 429, 451, 500, 501, 502, 503, 504, 599}) {
        const bool hasBody = status != 204 && status != 304;
        service.behave(Endpoint::user, answering(status, hasBody ? "body" : ""));
        const Ended ended = send(get(QStringLiteral("/v1/user")));
        ASSERT_TRUE(ended.answer) << status << ' ' << ended.error->what();
        EXPECT_EQ(ended.answer->status, status);
        EXPECT_EQ(ended.answer->body, hasBody ? "body" : "") << status;
    }
}

TEST_F(HttpClientTest, ARequestGoesOutAsItIs)
{
    HttpRequest request = get(QStringLiteral("/v1/user/upload/signed-url?a=%2Fb&c=%2B%C3%BC&d=e+f"));
    request.method = HttpMethod::post;
    request.headers = {{"Authorization", "ApiKey abc"}, {"Content-Type", "application/json"}};
    request.body = R"({"fileName":"a.png"})";
    EXPECT_TRUE(send(request).answer);

    const QList<ReceivedRequest> received = service.requests();
    ASSERT_THAT(received, SizeIs(1));
    EXPECT_EQ(received[0].method, "POST");
    EXPECT_EQ(received[0].target, "/v1/user/upload/signed-url?a=%2Fb&c=%2B%C3%BC&d=e+f");
    EXPECT_EQ(received[0].header("Authorization"), "ApiKey abc");
    EXPECT_EQ(received[0].header("Content-Type"), "application/json");
    EXPECT_EQ(received[0].body, R"({"fileName":"a.png"})");
    EXPECT_EQ(received[0].header("Cookie"), std::nullopt);
}

TEST_F(HttpClientTest, AHeaderKeepsItsBlanksAndItsForeignLetters)
{
    HttpRequest request = get(QStringLiteral("/v1/user"));
    for (const QByteArray &key :
         {QByteArray("  abc"), QStringLiteral("\"schlüssel\" 🔑").toUtf8(), QByteArray(10'000, 'k')}) {
        request.headers = {{"Authorization", "ApiKey " + key}};
        EXPECT_TRUE(send(request).answer);
        EXPECT_EQ(service.requests().last().header("Authorization"), "ApiKey " + key);
    }
}

TEST_F(HttpClientTest, NothingIsSentThatWouldInjectAHeader)
{
    HttpRequest request = get(QStringLiteral("/v1/user"));
    for (const QByteArray &key : {QByteArray("abc\r\nX-Injected: yes"), QByteArray("abc\n"), QByteArray("a\0b", 3)}) {
        request.headers = {{"Authorization", "ApiKey " + key}};
        EXPECT_EQ(failureOf(request), Kind::refused);
    }
    request.headers = {{"X-Name\r\nX-Injected", "yes"}};
    EXPECT_EQ(failureOf(request), Kind::refused);
    EXPECT_THAT(service.requests(), SizeIs(0));
    EXPECT_EQ(service.openConnections(), 0);
}

TEST_F(HttpClientTest, OnlyServersAreTalkedTo)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("written"));
    HttpRequest request = put("bytes");
    for (const QUrl &address : {QUrl::fromLocalFile(file), QUrl(QStringLiteral("ftp://127.0.0.1/a")), QUrl(),
                                QUrl(QStringLiteral("data:text/plain,x")), QUrl(QStringLiteral("/relative")),
                                QUrl(QStringLiteral("http:///a")), QUrl(QStringLiteral("qrc:/a"))}) {
        request.address = address;
        EXPECT_EQ(failureOf(request), Kind::refused) << qPrintable(address.toString());
    }
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(HttpClientTest, CookiesAreNotKept)
{
    service.behave(Endpoint::user, {.reply = ServiceReply{.headers = {{"Set-Cookie", "track=me; Path=/"}}}});
    EXPECT_TRUE(send(get(QStringLiteral("/v1/user"))).answer);
    EXPECT_TRUE(send(get(QStringLiteral("/v1/user"))).answer);
    EXPECT_EQ(service.requests().last().header("Cookie"), std::nullopt);
}

TEST_F(HttpClientTest, ALargeBodyArrivesWhole)
{
    const QByteArray picture = QByteArray("picture ").repeated(1'000'000);
    service.behave(Endpoint::storage, answering(200));
    EXPECT_TRUE(send(put(picture)).answer);
    ASSERT_THAT(service.requests(Endpoint::storage), SizeIs(1));
    EXPECT_TRUE(service.requests(Endpoint::storage)[0].body == picture);
}

TEST_F(HttpClientTest, TheKeyIsNotTakenToAnotherOrigin)
{
    ServiceDouble other;
    HttpRequest request = get(QStringLiteral("/v1/user"));
    request.headers = {{"Authorization", "ApiKey secret"}};
    for (const int status : {301, 302, 303, 307, 308}) {
        service.behave(Endpoint::user, redirectingTo(other.url(QStringLiteral("/v1/user")).toEncoded(), status));
        const Ended ended = send(request);
        ASSERT_TRUE(ended.answer) << status;
        EXPECT_EQ(ended.answer->status, status);
    }
    EXPECT_THAT(other.requests(), SizeIs(0));
}

TEST_F(HttpClientTest, ARedirectWithinTheOriginIsFollowedWithTheKey)
{
    service.behave(Endpoint::user, redirectingTo("/v1/templates"));
    HttpRequest request = get(QStringLiteral("/v1/user"));
    request.headers = {{"Authorization", "ApiKey demo-key"}};
    const Ended ended = send(request);
    ASSERT_TRUE(ended.answer);
    EXPECT_EQ(ended.answer->status, 200);
    EXPECT_EQ(service.requests(Endpoint::templates)[0].header("Authorization"), "ApiKey demo-key");
}

TEST_F(HttpClientTest, AnUploadIsRedirectedWithItsBody)
{
    ServiceDouble other;
    other.behave(Endpoint::storage, answering(200));
    service.behave(Endpoint::storage,
                   redirectingTo(other.url(QStringLiteral("/storage/b.png?signature=t")).toEncoded(), 307));
    const Ended ended = send(put("picture"));
    ASSERT_TRUE(ended.answer);
    EXPECT_EQ(ended.answer->status, 200);
    ASSERT_THAT(other.requests(), SizeIs(1));
    EXPECT_EQ(other.requests()[0].method, "PUT");
    EXPECT_EQ(other.requests()[0].target, "/storage/b.png?signature=t");
    EXPECT_EQ(other.requests()[0].body, "picture");
}

TEST_F(HttpClientTest, RedirectsEnd)
{
    service.behave(Endpoint::user, redirectingTo("/v1/user"));
    EXPECT_EQ(failureOf(get(QStringLiteral("/v1/user"))), Kind::tooManyRedirects);
}

TEST_F(HttpClientTest, ManyRequestsWaitForTheirTurnAndNoneIsLost)
{
    service.behave(Endpoint::storage, {.way = Way::silence}, 6);
    std::vector<std::shared_ptr<Ended>> first;
    for (int number = 0; number < 6; ++number) {
        first.push_back(begin(put("held up")));
    }
    waitUntil("six uploads", [this] { return service.requests(Endpoint::storage).size() == 6; });
    service.behave(Endpoint::storage, answering(200));

    QObject owner;
    auto owned = std::make_unique<QObject>();
    const auto calledOffWhileWaiting = begin(put("never sent"), owned.get());
    // A time-out that would be over long before its turn if it began now.
    HttpRequest patient = put("in time");
    patient.timeOut = std::chrono::milliseconds(500);
    const auto waiting = begin(patient, &owner);
    owned.reset();
    waitUntil("the one that was called off", [&] { return calledOffWhileWaiting->isThere(); });
    EXPECT_EQ(calledOffWhileWaiting->error->kind(), Kind::cancelled);

    // Another server is not affected.
    ServiceDouble other;
    other.behave(Endpoint::storage, answering(200));
    HttpRequest elsewhere = put("elsewhere");
    elsewhere.address = other.url(QStringLiteral("/storage/a.png"));
    EXPECT_TRUE(send(elsewhere).answer);
    EXPECT_FALSE(waiting->isThere());
    EXPECT_EQ(service.requests(Endpoint::storage).size(), 6);

    client.reset();
    EXPECT_EQ(waiting->error->kind(), Kind::cancelled);
    for (const auto &ended : first) {
        EXPECT_EQ(ended->error->kind(), Kind::cancelled);
    }
}

TEST_F(HttpClientTest, ThoseThatWaitedAreSentWhenOthersEnd)
{
    service.behave(Endpoint::storage,
                   {.way = Way::answer, .reply = ServiceReply{}, .pause = std::chrono::milliseconds(20)});
    std::vector<std::shared_ptr<Ended>> uploads;
    for (int number = 0; number < 20; ++number) {
        uploads.push_back(begin(put(QByteArray::number(number))));
    }
    EXPECT_TRUE(
        waitFor([&] { return std::ranges::all_of(uploads, [](const auto &one) { return one->answer.has_value(); }); }));
    EXPECT_THAT(service.requests(Endpoint::storage), SizeIs(20));
    EXPECT_LE(service.openConnections(), 6);
}

TEST_F(HttpClientTest, ARequestEndsWithItsOwner)
{
    service.behave(Endpoint::user, {.way = Way::silence});
    auto owner = std::make_unique<QObject>();
    const auto ended = begin(get(QStringLiteral("/v1/user")), owner.get());
    waitUntil("the request", [this] { return service.begun(Endpoint::user) == 1; });
    owner.reset();
    // Not while the owner is half gone.
    EXPECT_FALSE(ended->isThere());
    waitUntil("the ending", [&] { return ended->isThere(); });
    EXPECT_EQ(ended->error->kind(), Kind::cancelled);
    EXPECT_TRUE(waitFor([this] { return service.openConnections() == 0; }));
}

TEST_F(HttpClientTest, AnAnswerForAnOwnerThatIsJustGoneIsDropped)
{
    auto owner = std::make_unique<QObject>();
    const auto ended = begin(get(QStringLiteral("/v1/user")), owner.get());
    waitUntil("the request", [this] { return service.requests(Endpoint::user).size() == 1; });
    owner.reset();
    waitUntil("the ending", [&] { return ended->isThere(); });
}

TEST_F(HttpClientTest, WhenTheClientGoesEverythingEndsAtOnce)
{
    service.behave(Endpoint::storage, {.way = Way::stopReading});
    service.behave(Endpoint::user, {.way = Way::silence});
    const QByteArray picture(20'000'000, 'p');
    const auto upload = begin(put(picture));
    const auto other = begin(get(QStringLiteral("/v1/user")));
    waitUntil("the upload", [this] { return service.begun(Endpoint::storage) == 1; });
    client.reset();
    ASSERT_TRUE(upload->isThere());
    EXPECT_EQ(upload->error->kind(), Kind::cancelled);
    EXPECT_EQ(other->error->kind(), Kind::cancelled);
}

TEST_F(HttpClientTest, ConnectionsAreKeptForAMomentOnly)
{
    EXPECT_TRUE(send(get(QStringLiteral("/v1/user"))).answer);
    EXPECT_TRUE(send(get(QStringLiteral("/v1/user"))).answer);
    EXPECT_EQ(service.openConnections(), 1);

    client = std::make_unique<HttpClient>(HttpClient::Options{.keepConnections = std::chrono::milliseconds(10)});
    EXPECT_TRUE(send(get(QStringLiteral("/v1/user"))).answer);
    EXPECT_TRUE(waitFor([this] { return service.openConnections() == 0; }));
    EXPECT_TRUE(send(get(QStringLiteral("/v1/user"))).answer);
}

TEST_F(HttpClientTest, AClientThatIsNotUsedHasNoThread)
{
    const auto threads = [] { return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs).size(); };
    const auto before = threads();
    const HttpClient unused;
    EXPECT_EQ(threads(), before);
}

} // namespace
} // namespace lumenfold::test
