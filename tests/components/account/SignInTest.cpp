#include "tests/components/account/AccountFixture.h"

#include "tests/support/desktop/Wait.h"
#include "tests/support/unit/LogWatch.h"

#include <gmock/gmock.h>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;
using SignInTest = AccountFixture;

TEST_F(SignInTest, AGoodKeyIsStoredAndAnnounced)
{
    defaults.setRaw(AuthService::tierDefaultsKey, QStringLiteral("old tier"));
    service.behave(Endpoint::user, answering(200, R"({"user":{"email":"someone","firstname":"Ada","tier":"pro"}})"));
    const Outcome outcome = signIn(QStringLiteral("abc"));
    EXPECT_EQ(std::get<LumenfoldUser>(outcome), (LumenfoldUser{.email = QStringLiteral("someone"),
                                                               .firstname = QStringLiteral("Ada"),
                                                               .tier = QStringLiteral("pro")}));
    EXPECT_TRUE(auth.isSignedIn());
    EXPECT_EQ(auth.apiKey(), QStringLiteral("abc"));
    EXPECT_EQ(auth.userEmail(), QStringLiteral("someone"));
    EXPECT_EQ(auth.userTier(), QStringLiteral("pro"));
    EXPECT_FALSE(defaults.keys().contains(QStringLiteral("LumenFold.userFirstname")));
    EXPECT_EQ(posts, 1);
    const QList<KeyringDaemon::Item> items = daemon->items();
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0].attributes, KeyringDaemon::apiKeyAttributes());
    EXPECT_EQ(items[0].secret, QByteArray("abc"));

    // What the keyring itself then tells of the item is no news.
    EXPECT_TRUE(staysTrue([this] { return posts == 1; }, 100ms));
}

TEST_F(SignInTest, AUserWithoutFirstNameAndTierClearsTheStoredTier)
{
    defaults.setRaw(AuthService::tierDefaultsKey, QStringLiteral("old tier"));
    service.behave(Endpoint::user, answering(200, R"({"user":{"email":"someone"}})"));
    EXPECT_EQ(std::get<LumenfoldUser>(signIn(QStringLiteral("abc"))),
              LumenfoldUser{.email = QStringLiteral("someone")});
    EXPECT_EQ(auth.userEmail(), QStringLiteral("someone"));
    EXPECT_EQ(auth.userTier(), std::nullopt);
}

TEST_F(SignInTest, TheKeyTravelsTrimmedAndAloneInItsHeader)
{
    // The file of a keyring without a password does not keep blanks.
    useKeyring({.password = "master"});
    service.behave(Endpoint::user, answering(200, R"({"user":{"email":"someone"}})"));
    (void)signIn(QStringLiteral("  abc \n "));
    const QList<ReceivedRequest> requests = service.requests(Endpoint::user);
    ASSERT_EQ(requests.size(), 1);
    EXPECT_EQ(requests[0].method, "GET");
    EXPECT_EQ(requests[0].target, "/v1/user");
    EXPECT_EQ(requests[0].header("Authorization"), QByteArray("ApiKey abc"));
    EXPECT_FALSE(requests[0].header("Cookie"));
    EXPECT_FALSE(requests[0].header("Content-Type"));
    EXPECT_TRUE(requests[0].body.isEmpty());
    // Stored as it was passed in.
    EXPECT_EQ(auth.apiKey(), QStringLiteral("  abc \n "));
}

TEST_F(SignInTest, AKeyThatCannotBeOneIsNotSent)
{
    for (const char *key : {"", "   ", "\n\t ", "two\nlines", "a\r\nX-Header: 1"}) {
        EXPECT_EQ(std::get<QString>(signIn(QString::fromUtf8(key))), invalidKey());
    }
    EXPECT_TRUE(service.requests().isEmpty());
    EXPECT_EQ(posts, 0);
}

TEST_F(SignInTest, KeysOfAllKindsAreSentAndKept)
{
    useKeyring({.password = "master"});
    service.behave(Endpoint::user, answering(200, R"({"user":{"email":"someone"}})"));
    for (const QString &key :
         {QStringLiteral("with \"quotes\""), QString::fromUtf8("emoji \U0001F512"), QString(10'000, u'k')}) {
        EXPECT_TRUE(std::holds_alternative<LumenfoldUser>(signIn(key)));
        EXPECT_EQ(service.requests().last().header("Authorization"), "ApiKey " + key.toUtf8());
        EXPECT_EQ(auth.apiKey(), key);
    }
    EXPECT_EQ(daemon->items().size(), 1);
}

struct Refusal {
    const char *name;
    Behaviour behaviour;
    QString text;
};

class RefusedSignIn : public AccountFixture, public ::testing::WithParamInterface<Refusal> {};

TEST_P(RefusedSignIn, TellsWhyAndLeavesEverythingAsItWas)
{
    useKeyring({.apiKey = "before"});
    defaults.setRaw(AuthService::emailDefaultsKey, QStringLiteral("earlier"));
    service.behave(Endpoint::user, GetParam().behaviour);
    EXPECT_EQ(std::get<QString>(signIn(QStringLiteral("abc"))), GetParam().text);
    EXPECT_EQ(auth.apiKey(), QStringLiteral("before"));
    EXPECT_EQ(auth.userEmail(), QStringLiteral("earlier"));
    EXPECT_EQ(posts, 0);
}

const QString invalidText = QStringLiteral("That API key isn't valid. Double-check it and try again.");
const QString unreachableText = QStringLiteral("Couldn't reach LumenFold. Check your connection and try again.");

INSTANTIATE_TEST_SUITE_P(
    All, RefusedSignIn,
    ::testing::Values(
        Refusal{"Unauthorized", answering(401), invalidText}, Refusal{"Forbidden", answering(403), invalidText},
        Refusal{"ForbiddenWithAUser", answering(403, R"({"user":{"email":"someone"}})"), invalidText},
        Refusal{"NotFound", answering(404), QStringLiteral("Server returned 404.")},
        Refusal{"ServerError", answering(500, "oops"), QStringLiteral("Server returned 500.")},
        Refusal{"NoJson", answering(200, "welcome"), invalidText}, Refusal{"Nothing", answering(200), invalidText},
        Refusal{"NoUser", answering(200, R"({"email":"someone"})"), invalidText},
        Refusal{"NoEmail", answering(200, R"({"user":{"tier":"pro"}})"), invalidText},
        Refusal{"EmailIsANumber", answering(200, R"({"user":{"email":5}})"), invalidText},
        Refusal{"DeepJson", answering(200, QByteArray(100'000, '[')), invalidText},
        Refusal{"NotUtf8", answering(200, "{\"user\":{\"email\":\"\xff\"}}"), invalidText},
        Refusal{"CutConnection", {.way = Behaviour::Way::cut}, unreachableText},
        Refusal{"CutAnswer",
                {.way = Behaviour::Way::cutHalfway, .reply = ServiceReply{.body = QByteArray(10'000, ' ')}},
                unreachableText},
        Refusal{"Silence", {.way = Behaviour::Way::silence}, unreachableText},
        Refusal{"NotHttp", {.way = Behaviour::Way::nonsense}, unreachableText}),
    [](const ::testing::TestParamInfo<Refusal> &test) { return std::string(test.param.name); });

TEST_F(SignInTest, AnAddressThatIsNoServersGivesNoAnswer)
{
    defaults.setRaw(AppConfig::apiBaseOverrideKey, QStringLiteral("file:///etc"));
    EXPECT_EQ(std::get<QString>(signIn(QStringLiteral("abc"))), u"Unexpected server response.");
}

TEST_F(SignInTest, AMinuteIsHowLongTheServiceMayTake)
{
    const AuthService::Collaborators usual{.http = http,
                                           .config = config,
                                           .keychain = keychain,
                                           .defaults = defaults,
                                           .notifications = notifications,
                                           .queue = queue};
    EXPECT_EQ(usual.patience, 60s);
}

TEST_F(SignInTest, WithoutAKeyringTheUserIsTheUserButNobodyIsSignedIn)
{
    daemon.reset();
    service.behave(Endpoint::user, answering(200, R"({"user":{"email":"someone"}})"));
    expectLogLine(QStringLiteral("LumenFold keychain write failed: -25291"));
    EXPECT_TRUE(std::holds_alternative<LumenfoldUser>(signIn(QStringLiteral("abc"))));
    EXPECT_FALSE(auth.isSignedIn());
    EXPECT_FALSE(auth.hasKeyring());
    EXPECT_EQ(auth.userEmail(), QStringLiteral("someone"));
    EXPECT_EQ(posts, 1);
}

TEST_F(SignInTest, SigningOutEmptiesTheKeyring)
{
    useKeyring({.apiKey = "before"});
    auth.signOut();
    EXPECT_FALSE(auth.isSignedIn());
    EXPECT_TRUE(waitFor([this] { return daemon->items().isEmpty(); }));
    EXPECT_EQ(posts, 0);
    queue.advance(0ms);
    EXPECT_EQ(posts, 1);
}

TEST_F(SignInTest, AnItemThatIsRemovedElsewhereSignsOut)
{
    useKeyring({.apiKey = "before"});
    EXPECT_TRUE(auth.isSignedIn());
    daemon->removeAll();
    EXPECT_TRUE(waitFor([this] { return posts == 1; }));
    EXPECT_FALSE(auth.isSignedIn());
    EXPECT_TRUE(auth.isKnownToBeSignedOut());
}

TEST_F(SignInTest, ALockedKeyringIsUnlockedForANewKey)
{
    useKeyring({.apiKey = "before"});
    daemon->lock();
    ASSERT_TRUE(waitFor([this] { return keychain.presence(AuthService::keychainKey) == SecretPresence::locked; }));
    EXPECT_TRUE(auth.isSignedIn());
    service.behave(Endpoint::user, answering(200, R"({"user":{"email":"someone"}})"));
    EXPECT_TRUE(std::holds_alternative<LumenfoldUser>(signIn(QStringLiteral("new"))));
    EXPECT_EQ(auth.apiKey(), QStringLiteral("new"));
}

} // namespace
} // namespace lumenfold::test
