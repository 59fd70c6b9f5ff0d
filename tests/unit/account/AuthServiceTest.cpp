#include "service/AuthService.h"

#include "app/configuration/AppConfig.h"
#include "platform/notifications/NotificationCenter.h"
#include "service/KeychainHelper.h"
#include "service/http/HttpClient.h"
#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakeMainQueue.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeSecretStore.h"
#include "tests/support/fakes/FakeUserDefaults.h"

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;

/// The state as the keyring makes it; signing in meets a real server in the component tests.
class AuthServiceTest : public ::testing::Test {
protected:
    void putKey(const QByteArray &key = "stored") { store.putFromOutside(item, key); }

    const SecretKey item{.service = QStringLiteral("org.lumenfold.LumenFold"),
                         .account = QStringLiteral("org.lumenfold.LumenFold.apiKey")};
    FakeSecretStore store;
    KeychainHelper keychain{store};
    FakeUserDefaults defaults;
    NotificationCenter notifications;
    FakeMainQueue queue;
    FakeScreens screens;
    FakeFileManager files;
    AppConfig config{defaults, screens, files};
    HttpClient http;
    AuthService service{{.http = http,
                         .config = config,
                         .keychain = keychain,
                         .defaults = defaults,
                         .notifications = notifications,
                         .queue = queue}};
    int posts = 0;
    std::unique_ptr<NotificationCenter::Observation> observation =
        notifications.observe(QStringLiteral("LumenFold.authStateChanged"), [this](const Notification &notification) {
            EXPECT_EQ(notification.sender, nullptr);
            EXPECT_TRUE(notification.userInfo.isEmpty());
            ++posts;
        });
};

TEST_F(AuthServiceTest, BeingSignedInIsHavingAKeyEvenAnEmptyOne)
{
    EXPECT_FALSE(service.isSignedIn());
    EXPECT_TRUE(service.isKnownToBeSignedOut());
    putKey();
    EXPECT_TRUE(service.isSignedIn());
    EXPECT_EQ(service.apiKey(), QStringLiteral("stored"));
    putKey("");
    EXPECT_TRUE(service.isSignedIn());
    putKey("\xff");
    EXPECT_FALSE(service.isSignedIn());
    EXPECT_TRUE(service.isKnownToBeSignedOut());
}

TEST_F(AuthServiceTest, SigningOutForgetsAtOnceAndTellsLater)
{
    putKey();
    defaults.setRaw(QStringLiteral("LumenFold.userEmail"), QStringLiteral("someone@example.org"));
    defaults.setRaw(QStringLiteral("LumenFold.userTier"), QStringLiteral("pro"));
    EXPECT_EQ(service.userEmail(), QStringLiteral("someone@example.org"));
    EXPECT_EQ(service.userTier(), QStringLiteral("pro"));
    posts = 0;
    store.holdOperations();
    service.signOut();
    EXPECT_FALSE(service.isSignedIn());
    EXPECT_EQ(service.userEmail(), std::nullopt);
    EXPECT_EQ(service.userTier(), std::nullopt);
    EXPECT_EQ(posts, 0);
    queue.advance(0ms);
    EXPECT_EQ(posts, 1);
    store.finishNext();
    EXPECT_TRUE(store.items().empty());
    EXPECT_EQ(posts, 1);
}

TEST_F(AuthServiceTest, AKeyThatCannotBeRemovedMeansSignedInAgain)
{
    putKey();
    store.holdOperations();
    service.signOut();
    queue.advance(0ms);
    posts = 0;
    store.failNextWith(secretStatus::userCanceled);
    store.finishNext();
    EXPECT_TRUE(service.isSignedIn());
    EXPECT_EQ(posts, 1);
}

TEST_F(AuthServiceTest, WhatOthersDoToTheItemIsAnnounced)
{
    putKey();
    EXPECT_EQ(posts, 1);
    putKey("another");
    EXPECT_EQ(posts, 1);
    store.removeFromOutside(item);
    EXPECT_EQ(posts, 2);
    EXPECT_FALSE(service.isSignedIn());
    store.putFromOutside({.service = item.service, .account = QStringLiteral("other")}, "1");
    EXPECT_EQ(posts, 2);
}

TEST_F(AuthServiceTest, AKeyringThatHasNotAnsweredIsNotTakenForAnEmptyOne)
{
    store.keepSilent();
    putKey();
    EXPECT_FALSE(service.isSignedIn());
    EXPECT_FALSE(service.isKnownToBeSignedOut());
    bool hasAnswered = false;
    service.firstAnswer().then([&] { hasAnswered = true; });
    EXPECT_FALSE(hasAnswered);
    store.answer();
    EXPECT_TRUE(hasAnswered);
    EXPECT_TRUE(service.isSignedIn());
    EXPECT_EQ(posts, 1);
}

TEST_F(AuthServiceTest, ALockedKeyCountsAndIsUnlockedForWhoReallyNeedsIt)
{
    putKey();
    store.setLocked(true);
    EXPECT_TRUE(service.isSignedIn());
    EXPECT_EQ(service.apiKey(), std::nullopt);
    EXPECT_TRUE(store.operations.isEmpty());

    std::optional<QString> got;
    store.holdOperations();
    service.requestApiKey().then([&](const std::optional<QString> &key) { got = key; });
    EXPECT_EQ(got, std::nullopt);
    store.finishNext();
    EXPECT_EQ(got, QStringLiteral("stored"));
    EXPECT_EQ(posts, 1);
}

TEST_F(AuthServiceTest, AUserWhoDoesNotUnlockHasNoKey)
{
    putKey();
    store.setLocked(true);
    store.failNextWith(secretStatus::userCanceled);
    std::optional<std::optional<QString>> got;
    service.requestApiKey().then([&](const std::optional<QString> &key) { got = key; });
    ASSERT_TRUE(got);
    EXPECT_EQ(*got, std::nullopt);
    EXPECT_TRUE(service.isSignedIn());
}

TEST_F(AuthServiceTest, AReadableKeyNeedsNoUnlocking)
{
    putKey();
    std::optional<QString> got;
    service.requestApiKey().then([&](const std::optional<QString> &key) { got = key; });
    EXPECT_EQ(got, QStringLiteral("stored"));
    EXPECT_TRUE(store.operations.isEmpty());
}

TEST_F(AuthServiceTest, WithoutAKeyringNobodyIsSignedIn)
{
    store.setAvailable(false);
    EXPECT_FALSE(service.hasKeyring());
    EXPECT_TRUE(service.isKnownToBeSignedOut());
}

} // namespace
} // namespace lumenfold::test
