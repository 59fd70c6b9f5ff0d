#include "tests/components/secrets/SecretsFixture.h"

#include "tests/support/desktop/Wait.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

namespace lumenfold::test {
namespace {

using KeyringTroubleTest = SecretsFixture;

/// Stands where the desktop has the window that asks for passwords, and closes it at once.
class RefusingPrompter : public QDBusVirtualObject {
public:
    RefusingPrompter()
        : m_bus(QDBusConnection::connectToBus(QString::fromLatin1(qgetenv("DBUS_SESSION_BUS_ADDRESS")), name))
    {
        m_bus.registerVirtualObject(QStringLiteral("/org/gnome/keyring/Prompter"), this, QDBusConnection::SubPath);
        m_bus.registerService(name);
    }
    ~RefusingPrompter() override
    {
        m_bus.unregisterService(name);
        QDBusConnection::disconnectFromBus(name);
    }

    [[nodiscard]] QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        ++asked;
        connection.send(message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("not now")));
        return true;
    }

    int asked = 0;

private:
    const QString name = QStringLiteral("org.gnome.keyring.SystemPrompter");
    QDBusConnection m_bus;
};

TEST_F(KeyringTroubleTest, ALockedItemIsThereAndUnlockedWhenAsked)
{
    makeDaemon({.apiKey = "the key"});
    daemon->lock();
    makeAnsweredStore();
    EXPECT_EQ(store->presence(key), SecretPresence::locked);
    EXPECT_EQ(store->find(key), std::nullopt);
    EXPECT_EQ(statusOf(store->unlock(key)), secretStatus::success);
    EXPECT_EQ(store->find(key), QByteArray("the key"));
}

TEST_F(KeyringTroubleTest, LockingAndUnlockingAreFollowed)
{
    // Of a keyring without a password the service does not tell that it was unlocked.
    makeDaemon({.apiKey = "the key", .password = "master"});
    makeAnsweredStore();
    daemon->lock();
    EXPECT_TRUE(untilPresence(SecretPresence::locked));
    EXPECT_EQ(store->find(key), std::nullopt);
    daemon->unlock();
    EXPECT_TRUE(untilPresence(SecretPresence::present));
    EXPECT_EQ(store->find(key), QByteArray("the key"));
}

TEST_F(KeyringTroubleTest, AnEmptyLockedKeyringIsNotKnownToBeEmpty)
{
    makeDaemon();
    daemon->lock();
    makeAnsweredStore();
    EXPECT_EQ(store->presence(key), SecretPresence::unknown);
    EXPECT_EQ(statusOf(store->unlock(key)), secretStatus::success);
    EXPECT_EQ(store->presence(key), SecretPresence::absent);
}

TEST_F(KeyringTroubleTest, OnlyOperationsAskTheUser)
{
    makeDaemon({.apiKey = "the key", .password = "master"});
    RefusingPrompter prompter;
    daemon->lock();
    makeAnsweredStore();
    EXPECT_TRUE(untilPresence(SecretPresence::locked));
    EXPECT_EQ(prompter.asked, 0);

    EXPECT_EQ(statusOf(store->unlock(key)), secretStatus::userCanceled);
    EXPECT_EQ(prompter.asked, 1);
    EXPECT_TRUE(untilPresence(SecretPresence::locked));

    // Removing wants it unlocked as well, and puts nothing in doubt when the user does not want to.
    auto removed = store->remove(key);
    EXPECT_EQ(store->presence(key), SecretPresence::absent);
    EXPECT_EQ(statusOf(std::move(removed)), secretStatus::userCanceled);
    EXPECT_TRUE(untilPresence(SecretPresence::locked));
    EXPECT_TRUE(waitFor([&] { return changes > 0; }));

    daemon->unlock();
    EXPECT_TRUE(untilPresence(SecretPresence::present));
}

TEST_F(KeyringTroubleTest, WithoutAKeyringNothingIsStored)
{
    makeAnsweredStore();
    EXPECT_FALSE(store->isAvailable());
    EXPECT_EQ(store->presence(key), SecretPresence::absent);
    auto added = store->add(key, "value");
    EXPECT_EQ(store->find(key), QByteArray("value"));
    EXPECT_EQ(statusOf(std::move(added)), secretStatus::notAvailable);
    EXPECT_EQ(store->find(key), std::nullopt);
    EXPECT_EQ(statusOf(store->remove(key)), secretStatus::notAvailable);
    EXPECT_EQ(statusOf(store->unlock(key)), secretStatus::notAvailable);

    makeDaemon({.apiKey = "came later"});
    EXPECT_TRUE(untilPresence(SecretPresence::present));
    EXPECT_TRUE(store->isAvailable());
}

TEST_F(KeyringTroubleTest, AKilledKeyringIsReadAgainWhenItIsBack)
{
    makeDaemon({.apiKey = "the key"});
    makeAnsweredStore();
    daemon->kill();
    // Still stored, only nobody can read it now.
    EXPECT_TRUE(untilPresence(SecretPresence::locked));
    EXPECT_EQ(store->find(key), std::nullopt);
    daemon->start();
    EXPECT_TRUE(untilPresence(SecretPresence::present));
    EXPECT_EQ(store->find(key), QByteArray("the key"));
    EXPECT_EQ(statusOf(store->remove(key)), secretStatus::success);
}

TEST_F(KeyringTroubleTest, AKeyringThatHangsKeepsNobodyWaitingAndIsReadOnceItAnswers)
{
    makeDaemon({.apiKey = "the key"});
    daemon->hang();
    makeStore();
    bool hasAnswered = false;
    store->firstAnswer().then([&] { hasAnswered = true; });
    EXPECT_EQ(store->presence(key), SecretPresence::unknown);
    EXPECT_FALSE(hasAnswered);
    daemon->letGoOn();
    EXPECT_TRUE(waitFor([&] { return hasAnswered; }));
    EXPECT_TRUE(untilPresence(SecretPresence::present));
}

TEST_F(KeyringTroubleTest, AWriteToAKeyringThatHangsEndsWithAStatus)
{
    makeDaemon({.apiKey = "the key"});
    makeAnsweredStore();
    daemon->hang();
    EXPECT_EQ(statusOf(store->remove(key)), secretStatus::serviceNotAvailable);
    EXPECT_EQ(store->find(key), QByteArray("the key"));
    daemon->letGoOn();
    EXPECT_EQ(statusOf(store->remove(key)), secretStatus::success);
}

TEST_F(KeyringTroubleTest, NobodyWaitsForAKeyringThatHangsAtTheEnd)
{
    makeDaemon();
    daemon->hang();
    makeStore();
    EXPECT_EQ(store->presence(key), SecretPresence::unknown);
    auto added = store->add(key, "value");
    store.reset();
    EXPECT_NE(statusOf(std::move(added)), secretStatus::success);
}

TEST_F(KeyringTroubleTest, AProgramThatDoesWithoutTheBusKnowsNothing)
{
    makeDaemon({.apiKey = "the key"});
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    makeAnsweredStore();
    EXPECT_EQ(store->presence(key), SecretPresence::unknown);
    EXPECT_EQ(statusOf(store->add(key, "value")), secretStatus::serviceNotAvailable);
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
}

} // namespace
} // namespace lumenfold::test
