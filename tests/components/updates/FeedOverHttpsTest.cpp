/// The way of a feed from a server to what the user is told.
#include "tests/components/updates/UpdatesFixture.h"
#include "tests/support/desktop/Wait.h"

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;

class FeedOverHttps : public UpdatesTest {
protected:
    static QString unreachable()
    {
        return QStringLiteral("Couldn't reach the update server. Check your connection and try again.");
    }
    static QString unreadable()
    {
        return QStringLiteral("What the update server sent couldn't be understood. Try again later.");
    }

    void expectFailure(const QString &message)
    {
        check();
        EXPECT_EQ(heading(), u"Couldn't check for updates");
        EXPECT_EQ(text(), message);
        EXPECT_TRUE(delegate.told.isEmpty());
        window()->close();
    }
    void expectDistrust()
    {
        check();
        EXPECT_EQ(heading(), u"Couldn't check for updates");
        EXPECT_TRUE(text().contains(QStringLiteral("can't be trusted"))) << qPrintable(text());
        EXPECT_TRUE(delegate.told.isEmpty());
        window()->close();
    }
};

TEST_F(FeedOverHttps, ANewerVersionIsOffered)
{
    serveSigned({{.version = "1.4.0"}});
    check();
    EXPECT_EQ(heading(), u"LumenFold 1.4.0 is available");
    EXPECT_EQ(text(), u"You have version 1.3.0.");
    EXPECT_EQ(delegate.told, QStringList{QStringLiteral("1.4.0")});
    EXPECT_EQ(requests(), 1);
    // Nobody is told who asks.
    EXPECT_FALSE(server.requests()[0].header("Authorization"));
    EXPECT_FALSE(server.requests()[0].header("Cookie"));
    EXPECT_TRUE(server.requests()[0].query().isEmpty());
}

TEST_F(FeedOverHttps, AnOlderVersionIsNone)
{
    serveSigned({{.version = "1.2.0"}});
    check();
    EXPECT_EQ(heading(), u"You're up to date");
    EXPECT_EQ(text(), u"LumenFold 1.3.0 is the newest version for this system.");
    EXPECT_EQ(delegate.told, QStringList{QStringLiteral("none")});
}

TEST_F(FeedOverHttps, OneThatIsNotSignedIsNotTrusted)
{
    serve(feedOf({{.version = "9.0"}}));
    expectDistrust();
    serve(FeedSigner().sign(feedOf({{.version = "9.0"}})));
    expectDistrust();
    serve(signer.sign(feedOf({{.version = "1.4"}})).replace("1.4", "9.0"));
    expectDistrust();
    serve("<html><body>The page of the café's network</body></html>");
    expectDistrust();
}

TEST_F(FeedOverHttps, OneThatIsBrokenIsNotUnderstood)
{
    serve(signer.sign("<rss><channel><item>"));
    expectFailure(unreadable());
}

TEST_F(FeedOverHttps, OneThatIsTooLargeIsNotReadToItsEnd)
{
    behave({.reply = ServiceReply{.body = feedOf({{.version = "9.0"}}), .padding = qint64{16} * 1024 * 1024}});
    expectFailure(unreadable());
}

TEST_F(FeedOverHttps, AServerInTroubleIsAFailure)
{
    for (const int status : {404, 500, 204, 304}) {
        behave(answering(status, status == 204 || status == 304 ? "" : signer.sign(feedOf({{.version = "9.0"}}))));
        expectFailure(unreachable());
    }
    for (const Way way : {Way::cut, Way::cutHalfway, Way::nonsense}) {
        behave({.way = way, .reply = ServiceReply{.body = signer.sign(feedOf({{.version = "9.0"}}))}});
        expectFailure(unreachable());
    }
}

TEST_F(FeedOverHttps, ARedirectToAnotherSecureServerIsFollowed)
{
    ServiceDouble other(ServiceDouble::Options{.identity = s_authority->identityFor(QStringLiteral("127.0.0.1"))});
    other.behave(ServiceDouble::Endpoint::page, answering(200, signer.sign(feedOf({{.version = "1.4.0"}}))));
    behave(redirectingTo(other.url(QStringLiteral("/elsewhere.xml")).toEncoded()));
    check();
    EXPECT_EQ(heading(), u"LumenFold 1.4.0 is available");
}

TEST_F(FeedOverHttps, ARedirectToAPlainServerIsNot)
{
    ServiceDouble plain;
    plain.behave(ServiceDouble::Endpoint::page, answering(200, signer.sign(feedOf({{.version = "1.4.0"}}))));
    behave(redirectingTo(plain.url(QStringLiteral("/appcast.xml")).toEncoded()));
    expectFailure(unreachable());
    EXPECT_EQ(plain.begun(ServiceDouble::Endpoint::page), 0);
}

TEST_F(FeedOverHttps, ARedirectWithoutEndIsAFailure)
{
    behave(redirectingTo(server.url(QStringLiteral("/appcast.xml")).toEncoded()));
    expectFailure(unreachable());
}

TEST_F(FeedOverHttps, AServerThatIsNotWhoItSaysIsNotTrusted)
{
    serveSigned({{.version = "1.4.0"}});
    HttpClient stranger;
    HttpUpdateFeed untrusted(stranger, server.url(QStringLiteral("/appcast.xml")));
    AppcastUpdaterController another(
        {.feed = untrusted,
         .defaults = defaults,
         .queue = queue,
         .workspace = workspace,
         .user = user,
         .delegate = delegate},
        {.publicKey = signer.publicKey(), .version = QStringLiteral("1.3.0"), .systemVersion = QStringLiteral("2.36")});
    another.checkForUpdates();
    ASSERT_TRUE(waitFor([] { return heading() == u"Couldn't check for updates"; }));
    EXPECT_TRUE(text().contains(QStringLiteral("can't be trusted")));
    EXPECT_EQ(requests(), 0);
}

TEST_F(FeedOverHttps, ALookThatNobodyAskedForShowsNothing)
{
    serveSigned({{.version = "1.4.0"}});
    queue.advance(20min);
    EXPECT_TRUE(waitFor([this] { return !delegate.told.isEmpty(); }));
    EXPECT_EQ(delegate.told, QStringList{QStringLiteral("1.4.0")});
    EXPECT_EQ(window(), nullptr);
    EXPECT_EQ(workspace.activations, 0);
}

TEST_F(FeedOverHttps, TheProgramEndsInTheMiddleOfIt)
{
    behave({.way = Way::silence});
    auto others =
        std::make_unique<HttpClient>(HttpClient::Options{.additionalAuthorities = s_authority->certificate()});
    auto slow = std::make_unique<HttpUpdateFeed>(*others, server.url(QStringLiteral("/appcast.xml")));
    auto ending = std::make_unique<AppcastUpdaterController>(
        AppcastUpdaterController::Collaborators{.feed = *slow,
                                                .defaults = defaults,
                                                .queue = queue,
                                                .workspace = workspace,
                                                .user = user,
                                                .delegate = delegate},
        UpdateTerms{.publicKey = signer.publicKey(), .version = QStringLiteral("1.3.0")});
    ending->checkForUpdates();
    waitUntil("the request", [this] { return requests() == 1; });
    ending.reset();
    slow.reset();
    others.reset();
    EXPECT_TRUE(delegate.told.isEmpty());
}

} // namespace
} // namespace lumenfold::test
