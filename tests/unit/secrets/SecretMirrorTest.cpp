#include "platform/secrets/SecretMirror.h"

#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

const QString account = QStringLiteral("account");

KeyringContents holding(const std::optional<QByteArray> &data)
{
    return {.items = {{.account = account, .data = data}}};
}

TEST(SecretMirror, KnowsNothingBeforeTheFirstAnswer)
{
    const SecretMirror mirror;
    EXPECT_EQ(mirror.presence(account), SecretPresence::unknown);
    EXPECT_EQ(mirror.find(account), std::nullopt);
    EXPECT_TRUE(mirror.isAvailable());
}

TEST(SecretMirror, TellsWhatTheKeyringSaid)
{
    SecretMirror mirror;
    mirror.take(holding("data"));
    EXPECT_EQ(mirror.presence(account), SecretPresence::present);
    EXPECT_EQ(mirror.find(account), QByteArray("data"));
    mirror.take(holding(std::nullopt));
    EXPECT_EQ(mirror.presence(account), SecretPresence::locked);
    mirror.take({});
    EXPECT_EQ(mirror.presence(account), SecretPresence::absent);
    mirror.take({.items = {}, .mayHideItems = true});
    EXPECT_EQ(mirror.presence(account), SecretPresence::unknown);
    // Some keyrings tell what a locked one holds, until somebody declines to unlock it.
    mirror.take(holding(std::nullopt));
    mirror.take({.items = {}, .mayHideItems = true});
    EXPECT_EQ(mirror.presence(account), SecretPresence::locked);
    mirror.take({});
    EXPECT_EQ(mirror.presence(account), SecretPresence::absent);
}

TEST(SecretMirror, OfSeveralItemsTheOneThatCanBeReadCounts)
{
    SecretMirror mirror;
    mirror.take({.items = {{account, std::nullopt}, {account, "readable"}, {account, "another"}}});
    EXPECT_EQ(mirror.find(account), QByteArray("readable"));
}

TEST(SecretMirror, WhatWasAskedForCountsUntilItIsSettled)
{
    SecretMirror mirror;
    mirror.take(holding("old"));
    mirror.expect(1, account, std::nullopt);
    EXPECT_EQ(mirror.presence(account), SecretPresence::absent);
    mirror.expect(2, account, "new");
    EXPECT_EQ(mirror.find(account), QByteArray("new"));
    mirror.settle(1);
    EXPECT_EQ(mirror.find(account), QByteArray("new"));
    // An answer that the keyring gave meanwhile is older than what it was asked to do.
    mirror.take({});
    EXPECT_EQ(mirror.find(account), QByteArray("new"));
    mirror.settle(2);
    EXPECT_EQ(mirror.presence(account), SecretPresence::absent);
}

TEST(SecretMirror, AMissingKeyringHoldsNothingAndAHangingOneWhatItHeld)
{
    SecretMirror mirror;
    mirror.fail(secretStatus::serviceNotAvailable);
    EXPECT_EQ(mirror.presence(account), SecretPresence::unknown);
    mirror.take(holding("data"));
    mirror.fail(secretStatus::serviceNotAvailable);
    EXPECT_EQ(mirror.find(account), QByteArray("data"));
    mirror.fail(secretStatus::notAvailable);
    EXPECT_EQ(mirror.presence(account), SecretPresence::absent);
    EXPECT_FALSE(mirror.isAvailable());
    mirror.take(holding("data"));
    EXPECT_TRUE(mirror.isAvailable());
}

TEST(SecretMirror, AKeyringThatEndsTakesTheContentsWithIt)
{
    SecretMirror mirror;
    mirror.take(holding("data"));
    mirror.gone();
    EXPECT_EQ(mirror.presence(account), SecretPresence::locked);
    EXPECT_EQ(mirror.find(account), std::nullopt);
}

TEST(SecretMirror, LooksAlikeWhenEveryAnswerIsTheSame)
{
    SecretMirror mirror;
    SecretMirror other;
    EXPECT_TRUE(mirror.looksLike(other));
    other.take({});
    EXPECT_FALSE(mirror.looksLike(other));
    mirror.take(holding("data"));
    other.expect(1, account, "data");
    EXPECT_TRUE(mirror.looksLike(other));
    other.settle(1);
    EXPECT_FALSE(mirror.looksLike(other));
    EXPECT_FALSE(other.looksLike(mirror));
    other.take(holding("other data"));
    EXPECT_FALSE(mirror.looksLike(other));
}

} // namespace
} // namespace lumenfold::test
