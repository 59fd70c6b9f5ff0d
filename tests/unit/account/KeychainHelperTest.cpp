#include "service/KeychainHelper.h"

#include "tests/support/fakes/FakeSecretStore.h"
#include "tests/support/unit/LogWatch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

class KeychainHelperTest : public ::testing::Test {
protected:
    const QString key = QStringLiteral("org.lumenfold.LumenFold.apiKey");
    const SecretKey item{.service = QStringLiteral("org.lumenfold.LumenFold"), .account = key};
    FakeSecretStore store;
    KeychainHelper keychain{store};
};

TEST_F(KeychainHelperTest, WritingTwiceLeavesOneItemWithTheSecondValue)
{
    keychain.write(key, QStringLiteral("first"));
    keychain.write(key, QStringLiteral("zweiter ✓ \n\""));
    ASSERT_EQ(store.items().size(), 1U);
    EXPECT_EQ(store.items().at(item), QByteArray("zweiter \u2713 \n\""));
    EXPECT_EQ(keychain.read(key), QStringLiteral("zweiter ✓ \n\""));
    const QString account = u' ' + key;
    EXPECT_THAT(store.operations,
                ::testing::ElementsAre(QStringLiteral("remove") + account, QStringLiteral("add") + account,
                                       QStringLiteral("remove") + account, QStringLiteral("add") + account));
}

TEST_F(KeychainHelperTest, ARefusedWriteIsInTheLogWithItsStatus)
{
    store.failNextWith(secretStatus::itemNotFound);
    store.failNextWith(-25293);
    expectLogLine(QStringLiteral("LumenFold keychain write failed: -25293"));
    keychain.write(key, QStringLiteral("value"));
    EXPECT_EQ(keychain.read(key), std::nullopt);
}

TEST_F(KeychainHelperTest, AWriteIsReadBeforeTheKeyringHasIt)
{
    keychain.write(key, QStringLiteral("old"));
    store.holdOperations();
    keychain.write(key, QStringLiteral("new"));
    EXPECT_EQ(keychain.read(key), QStringLiteral("new"));
    store.finishNext();
    EXPECT_EQ(keychain.read(key), QStringLiteral("new"));
    store.finishNext();
    EXPECT_EQ(keychain.read(key), QStringLiteral("new"));
}

TEST_F(KeychainHelperTest, ReadsNothingThatIsMissingOrNoText)
{
    EXPECT_EQ(keychain.read(key), std::nullopt);
    store.putFromOutside(item, "\xff\xfe");
    EXPECT_EQ(keychain.read(key), std::nullopt);
    EXPECT_EQ(keychain.presence(key), SecretPresence::present);
    store.putFromOutside(item, "");
    EXPECT_EQ(keychain.read(key), QString());
}

TEST_F(KeychainHelperTest, RemovingIsSeenAtOnceAndSilentlyFails)
{
    keychain.write(key, QStringLiteral("value"));
    store.holdOperations();
    keychain.remove(key);
    EXPECT_EQ(keychain.read(key), std::nullopt);
    store.failNextWith(secretStatus::userCanceled);
    store.finishNext();
    // It is still there after all.
    EXPECT_EQ(keychain.read(key), QStringLiteral("value"));
    keychain.remove(key);
    store.finishNext();
    keychain.remove(key);
    store.finishNext();
    EXPECT_TRUE(store.items().empty());
}

TEST_F(KeychainHelperTest, OtherKeysAreOtherItems)
{
    keychain.write(key, QStringLiteral("one"));
    keychain.write(QStringLiteral("other"), QStringLiteral("two"));
    keychain.remove(QStringLiteral("other"));
    EXPECT_EQ(keychain.read(key), QStringLiteral("one"));
    EXPECT_EQ(keychain.read(QStringLiteral("other")), std::nullopt);
}

} // namespace
} // namespace lumenfold::test
