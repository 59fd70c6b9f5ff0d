/// The program as the desktop calls it over the session bus.
#include "platform/remoteactions/DBusRemoteActions.h"
#include "platform/remoteactions/RunningInstance.h"
#include "tests/support/desktop/Session.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/unit/LogWatch.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVariant>

#include <gtest/gtest.h>

#include <future>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;

const QString name = QStringLiteral("org.lumenfold.LumenFold");

class ApplicationOnBusTest : public ::testing::Test {
protected:
    ApplicationOnBusTest()
    {
        actions = std::make_unique<DBusRemoteActions>();
        actions->publish(
            {.activate = [this] { done.append(QStringLiteral("activate")); },
             .actions = {{QStringLiteral("settings"), [this] { done.append(QStringLiteral("settings")); }}}});
    }

    ~ApplicationOnBusTest() override { QDBusConnection::disconnectFromBus(QStringLiteral("caller")); }

    [[nodiscard]] bool isOnTheBus()
    {
        return waitFor([this] { return caller.interface()->isServiceRegistered(name).value(); });
    }

    QDBusMessage call(const QString &method, const QVariantList &arguments)
    {
        QDBusMessage question = QDBusMessage::createMethodCall(name, QStringLiteral("/org/lumenfold/LumenFold"),
                                                               QStringLiteral("org.freedesktop.Application"), method);
        question.setArguments(arguments);
        const QDBusPendingCall answer = caller.asyncCall(question);
        EXPECT_TRUE(waitFor([&] { return answer.isFinished(); }));
        return answer.reply();
    }

    QStringList done;
    std::unique_ptr<DBusRemoteActions> actions;
    QDBusConnection caller = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("caller"));
};

TEST_F(ApplicationOnBusTest, ItsActionsAreCalledByName)
{
    ASSERT_TRUE(isOnTheBus());
    EXPECT_EQ(call(QStringLiteral("Activate"), {QVariantMap()}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(
        call(QStringLiteral("ActivateAction"), {QStringLiteral("settings"), QVariantList(), QVariantMap()}).type(),
        QDBusMessage::ReplyMessage);
    EXPECT_EQ(done, QStringList({QStringLiteral("activate"), QStringLiteral("settings")}));
}

TEST_F(ApplicationOnBusTest, WhatItDoesNotKnowIsIgnored)
{
    ASSERT_TRUE(isOnTheBus());
    expectLogLine(QStringLiteral("LumenFold: asked for an unknown action: format-disk"));
    expectLogLine(QStringLiteral("LumenFold: the action settings takes no parameters"));
    expectLogLine(QStringLiteral("LumenFold: asked to open 1 files, which it does not do"));
    (void)call(QStringLiteral("ActivateAction"), {QStringLiteral("format-disk"), QVariantList(), QVariantMap()});
    QVariantList nested{QVariant::fromValue(QDBusVariant(QVariantList{1, QStringLiteral("two")}))};
    (void)call(QStringLiteral("ActivateAction"), {QStringLiteral("settings"), nested, QVariantMap()});
    (void)call(QStringLiteral("Open"), {QStringList{QStringLiteral("file:///etc/passwd")}, QVariantMap()});
    EXPECT_EQ(call(QStringLiteral("Activate"), {}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(call(QStringLiteral("ActivateAction"), {1, 2, 3}).type(), QDBusMessage::ErrorMessage);
    EXPECT_TRUE(done.isEmpty());
}

TEST_F(ApplicationOnBusTest, AnotherStartReachesIt)
{
    ASSERT_TRUE(isOnTheBus());
    std::future<bool> reached = std::async(std::launch::async, [] { return askRunningInstance({}, 5s); });
    EXPECT_TRUE(waitFor([&] { return reached.wait_for(0s) == std::future_status::ready; }));
    EXPECT_TRUE(reached.get());
    EXPECT_EQ(done, QStringList{QStringLiteral("activate")});
}

TEST_F(ApplicationOnBusTest, AnotherStartReachesNobodyWhenNobodyIsThere)
{
    ASSERT_TRUE(isOnTheBus());
    actions.reset();
    EXPECT_TRUE(waitFor([this] { return !caller.interface()->isServiceRegistered(name).value(); }));
    EXPECT_FALSE(askRunningInstance({}, 5s));
}

TEST_F(ApplicationOnBusTest, AnotherStartDoesNotWaitForOneThatHangs)
{
    // This thread, which would answer, waits.
    ASSERT_TRUE(isOnTheBus());
    EXPECT_FALSE(askRunningInstance({}, 100ms));
    EXPECT_TRUE(waitFor([&] { return done.size() == 1; }));
}

TEST_F(ApplicationOnBusTest, ANameThatSomebodyElseHasIsALineInTheLog)
{
    ASSERT_TRUE(isOnTheBus());
    actions.reset();
    EXPECT_TRUE(waitFor([this] { return caller.registerService(name); }));
    expectLogLine(QStringLiteral("LumenFold: the session bus does not give it the name org.lumenfold.LumenFold, so the "
                                 "desktop cannot reach it"));
    actions = std::make_unique<DBusRemoteActions>();
    actions->publish({});
    EXPECT_TRUE(waitFor([] { return !logLines().filter(QStringLiteral("does not give it the name")).isEmpty(); }));
    caller.unregisterService(name);
}

} // namespace
} // namespace lumenfold::test
