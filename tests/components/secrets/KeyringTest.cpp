#include "tests/components/secrets/SecretsFixture.h"

#include "service/KeychainHelper.h"
#include "tests/support/desktop/Wait.h"

#include <gmock/gmock.h>

namespace lumenfold::test {
namespace {

using KeyringTest = SecretsFixture;

/// A zero, letters beyond ASCII, a line break and a quote.
const QByteArray binary("pa\0ss \u2713\n\"", 11);

TEST_F(KeyringTest, WhatIsInTheKeyringIsReadWithoutWaiting)
{
    makeDaemon({.apiKey = "the key"});
    makeStore();
    EXPECT_EQ(store->presence(key), SecretPresence::unknown);
    EXPECT_EQ(store->find(key), std::nullopt);
    QCoro::waitFor(store->firstAnswer());
    EXPECT_EQ(store->presence(key), SecretPresence::present);
    EXPECT_EQ(store->find(key), QByteArray("the key"));
    EXPECT_TRUE(store->isAvailable());
    // The signal may still be on its way.
    EXPECT_TRUE(waitFor([&] { return changes == 1; }));
    EXPECT_EQ(store->presence({.service = key.service, .account = QStringLiteral("other")}), SecretPresence::absent);
    EXPECT_EQ(store->presence({.service = QStringLiteral("other"), .account = key.account}), SecretPresence::unknown);
}

TEST_F(KeyringTest, AnEmptyKeyringHoldsNothing)
{
    makeDaemon();
    makeAnsweredStore();
    EXPECT_EQ(store->presence(key), SecretPresence::absent);
    EXPECT_EQ(store->find(key), std::nullopt);
    EXPECT_EQ(statusOf(store->remove(key)), secretStatus::itemNotFound);
    EXPECT_EQ(statusOf(store->unlock(key)), secretStatus::itemNotFound);
}

TEST_F(KeyringTest, AnItemIsStoredUnderExactlyServiceAndAccount)
{
    // The file of a keyring without a password does not keep every byte.
    makeDaemon({.password = "master"});
    makeAnsweredStore();
    EXPECT_EQ(statusOf(store->add(key, binary)), secretStatus::success);
    const QList<KeyringDaemon::Item> items = daemon->items();
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0].attributes, KeyringDaemon::apiKeyAttributes());
    EXPECT_EQ(items[0].secret, binary);
    EXPECT_EQ(store->find(key), binary);
}

TEST_F(KeyringTest, AddingDoesNotReplace)
{
    makeDaemon({.apiKey = "first"});
    makeAnsweredStore();
    EXPECT_EQ(statusOf(store->add(key, "second")), secretStatus::duplicateItem);
    EXPECT_EQ(store->find(key), QByteArray("first"));
    ASSERT_EQ(daemon->items().size(), 1);
    EXPECT_EQ(daemon->items()[0].secret, QByteArray("first"));
}

TEST_F(KeyringTest, WritingTwiceLeavesOneItemWithTheSecondValue)
{
    makeDaemon();
    makeAnsweredStore();
    KeychainHelper keychain(*store);
    for (const QString &value : {QStringLiteral("first"), QStringLiteral("second")}) {
        QCoro::waitFor(keychain.write(key.account, value));
        EXPECT_EQ(keychain.read(key.account), value);
    }
    ASSERT_EQ(daemon->items().size(), 1);
    EXPECT_EQ(daemon->items()[0].secret, QByteArray("second"));
    keychain.remove(key.account);
    EXPECT_EQ(keychain.read(key.account), std::nullopt);
    EXPECT_TRUE(waitFor([&] { return daemon->items().isEmpty(); }));
    EXPECT_EQ(changes, 0);
}

TEST_F(KeyringTest, TenThousandCharactersAreKept)
{
    makeDaemon();
    makeAnsweredStore();
    const QByteArray large(10'000, 'k');
    EXPECT_EQ(statusOf(store->add(key, large)), secretStatus::success);
    EXPECT_EQ(daemon->items().value(0).secret, large);
    EXPECT_EQ(statusOf(store->remove(key)), secretStatus::success);
    EXPECT_EQ(statusOf(store->add(key, "")), secretStatus::success);
    EXPECT_EQ(store->find(key), QByteArray(""));
}

TEST_F(KeyringTest, OperationsAreSeenAtOnceAndDoneInTheirOrder)
{
    makeDaemon({.apiKey = "old"});
    makeAnsweredStore();
    auto removed = store->remove(key);
    auto added = store->add(key, "new");
    EXPECT_EQ(store->find(key), QByteArray("new"));
    auto removedAgain = store->remove(key);
    EXPECT_EQ(store->presence(key), SecretPresence::absent);
    EXPECT_EQ(statusOf(std::move(removed)), secretStatus::success);
    EXPECT_EQ(statusOf(std::move(added)), secretStatus::success);
    EXPECT_EQ(statusOf(std::move(removedAgain)), secretStatus::success);
    EXPECT_TRUE(daemon->items().isEmpty());
    EXPECT_EQ(store->presence(key), SecretPresence::absent);
}

TEST_F(KeyringTest, AnOperationBeforeTheFirstAnswerIsDoneToo)
{
    makeDaemon();
    makeStore();
    auto added = store->add(key, "early");
    EXPECT_EQ(store->find(key), QByteArray("early"));
    EXPECT_EQ(statusOf(std::move(added)), secretStatus::success);
    EXPECT_EQ(store->find(key), QByteArray("early"));
    EXPECT_EQ(daemon->items().size(), 1);
}

TEST_F(KeyringTest, AnOperationUnderWayIsFinishedBeforeTheEnd)
{
    makeDaemon({.apiKey = "old"});
    makeAnsweredStore();
    auto removed = store->remove(key);
    store.reset();
    EXPECT_TRUE(daemon->items().isEmpty());
    EXPECT_EQ(statusOf(std::move(removed)), secretStatus::success);
}

TEST_F(KeyringTest, WhatOtherProgramsDoIsFollowed)
{
    makeDaemon();
    makeAnsweredStore();
    daemon->add(KeyringDaemon::apiKeyAttributes(), "from outside");
    EXPECT_TRUE(untilPresence(SecretPresence::present));
    EXPECT_EQ(store->find(key), QByteArray("from outside"));
    daemon->removeAll();
    EXPECT_TRUE(untilPresence(SecretPresence::absent));
    EXPECT_TRUE(waitFor([&] { return changes == 2; }));
}

TEST_F(KeyringTest, ItemsOfOthersAreNobodysBusiness)
{
    makeDaemon({.apiKey = "mine"});
    daemon->add({{QStringLiteral("service"), QStringLiteral("mail")}, {QStringLiteral("account"), key.account}}, "1");
    daemon->add({{QStringLiteral("service"), key.service}}, "no account");
    makeAnsweredStore();
    EXPECT_EQ(store->find(key), QByteArray("mine"));
    EXPECT_EQ(statusOf(store->remove(key)), secretStatus::success);
    EXPECT_EQ(daemon->items().size(), 2);
}

TEST_F(KeyringTest, AllItemsOfOneNameAreRemoved)
{
    makeDaemon({.apiKey = "one"});
    KeyringDaemon::Attributes withSchema = KeyringDaemon::apiKeyAttributes();
    withSchema.insert(QStringLiteral("label"), QStringLiteral("of another tool"));
    daemon->add(withSchema, "two");
    makeAnsweredStore();
    EXPECT_EQ(store->presence(key), SecretPresence::present);
    EXPECT_EQ(statusOf(store->remove(key)), secretStatus::success);
    EXPECT_TRUE(daemon->items().isEmpty());
}

} // namespace
} // namespace lumenfold::test
