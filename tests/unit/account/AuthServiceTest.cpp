#include "service/AuthService.h"

#include "tests/support/fakes/FakeAccount.h"
#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;

/// The state as the keyring makes it; signing in meets a real server in the component tests.
class AuthServiceTest : public ::testing::Test, protected FakeAccount {
protected:
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
    EXPECT_FALSE(auth.isSignedIn());
    EXPECT_TRUE(auth.isKnownToBeSignedOut());
    putKey("stored");
    EXPECT_TRUE(auth.isSignedIn());
    EXPECT_EQ(auth.apiKey(), QStringLiteral("stored"));
    putKey("");
    EXPECT_TRUE(auth.isSignedIn());
    putKey("\xff");
    EXPECT_FALSE(auth.isSignedIn());
    EXPECT_TRUE(auth.isKnownToBeSignedOut());
}

TEST_F(AuthServiceTest, SigningOutForgetsAtOnceAndTellsLater)
{
    putKey("stored");
    defaults.setRaw(QStringLiteral("LumenFold.userEmail"), QStringLiteral("someone@example.org"));
    defaults.setRaw(QStringLiteral("LumenFold.userTier"), QStringLiteral("pro"));
    EXPECT_EQ(auth.userEmail(), QStringLiteral("someone@example.org"));
    EXPECT_EQ(auth.userTier(), QStringLiteral("pro"));
    posts = 0;
    keyring.holdOperations();
    auth.signOut();
    EXPECT_FALSE(auth.isSignedIn());
    EXPECT_EQ(auth.userEmail(), std::nullopt);
    EXPECT_EQ(auth.userTier(), std::nullopt);
    EXPECT_EQ(posts, 0);
    queue.advance(0ms);
    EXPECT_EQ(posts, 1);
    keyring.finishNext();
    EXPECT_TRUE(keyring.items().empty());
    EXPECT_EQ(posts, 1);
}

TEST_F(AuthServiceTest, AKeyThatCannotBeRemovedMeansSignedInAgain)
{
    putKey("stored");
    keyring.holdOperations();
    auth.signOut();
    queue.advance(0ms);
    posts = 0;
    keyring.failNextWith(secretStatus::userCanceled);
    keyring.finishNext();
    EXPECT_TRUE(auth.isSignedIn());
    EXPECT_EQ(posts, 1);
}

TEST_F(AuthServiceTest, WhatOthersDoToTheItemIsAnnounced)
{
    putKey("stored");
    EXPECT_EQ(posts, 1);
    putKey("another");
    EXPECT_EQ(posts, 1);
    removeKey();
    EXPECT_EQ(posts, 2);
    EXPECT_FALSE(auth.isSignedIn());
    keyring.putFromOutside({.service = apiKeyItem().service, .account = QStringLiteral("other")}, "1");
    EXPECT_EQ(posts, 2);
}

TEST_F(AuthServiceTest, AKeyringThatHasNotAnsweredIsNotTakenForAnEmptyOne)
{
    keyring.keepSilent();
    putKey("stored");
    EXPECT_FALSE(auth.isSignedIn());
    EXPECT_FALSE(auth.isKnownToBeSignedOut());
    bool hasAnswered = false;
    auth.firstAnswer().then([&] { hasAnswered = true; });
    EXPECT_FALSE(hasAnswered);
    keyring.answer();
    EXPECT_TRUE(hasAnswered);
    EXPECT_TRUE(auth.isSignedIn());
    EXPECT_EQ(posts, 1);
}

TEST_F(AuthServiceTest, ALockedKeyCountsAndIsUnlockedForWhoReallyNeedsIt)
{
    putKey("stored");
    keyring.setLocked(true);
    EXPECT_TRUE(auth.isSignedIn());
    EXPECT_EQ(auth.apiKey(), std::nullopt);
    EXPECT_TRUE(keyring.operations.isEmpty());

    std::optional<QString> got;
    keyring.holdOperations();
    auth.requestApiKey().then([&](const std::optional<QString> &key) { got = key; });
    EXPECT_EQ(got, std::nullopt);
    keyring.finishNext();
    EXPECT_EQ(got, QStringLiteral("stored"));
    EXPECT_EQ(posts, 1);
}

TEST_F(AuthServiceTest, AUserWhoDoesNotUnlockHasNoKey)
{
    putKey("stored");
    keyring.setLocked(true);
    keyring.failNextWith(secretStatus::userCanceled);
    std::optional<std::optional<QString>> got;
    auth.requestApiKey().then([&](const std::optional<QString> &key) { got = key; });
    ASSERT_TRUE(got);
    EXPECT_EQ(*got, std::nullopt);
    EXPECT_TRUE(auth.isSignedIn());
}

TEST_F(AuthServiceTest, AReadableKeyNeedsNoUnlocking)
{
    putKey("stored");
    std::optional<QString> got;
    auth.requestApiKey().then([&](const std::optional<QString> &key) { got = key; });
    EXPECT_EQ(got, QStringLiteral("stored"));
    EXPECT_TRUE(keyring.operations.isEmpty());
}

TEST_F(AuthServiceTest, WithoutAKeyringNobodyIsSignedIn)
{
    keyring.setAvailable(false);
    EXPECT_FALSE(auth.hasKeyring());
    EXPECT_TRUE(auth.isKnownToBeSignedOut());
}

} // namespace
} // namespace lumenfold::test
