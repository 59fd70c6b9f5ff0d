#include "platform/updates/AppcastUpdaterController.h"

#include "tests/support/fakes/FakeMainQueue.h"
#include "tests/support/fakes/FakeUpdateFeed.h"
#include "tests/support/fakes/FakeUpdater.h"
#include "tests/support/fakes/FakeUserDefaults.h"
#include "tests/support/fakes/FakeWorkspace.h"
#include "tests/support/unit/LogWatch.h"
#include "tests/support/updates/SignedFeeds.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;

const QString none = QStringLiteral("none");
const QString v2 = QStringLiteral("2.0");
const QString v3 = QStringLiteral("3.0");
const QString checking = QStringLiteral("checking");

/// The updater on a clock that stands still until it is moved.
class AppcastUpdaterControllerTest : public ::testing::Test {
protected:
    static constexpr std::chrono::sys_seconds start{1'800'000'000s};

    AppcastUpdaterControllerTest() { restart(); }

    /// The program ends, if it runs, and begins anew.
    void restart()
    {
        updater.reset();
        updater.emplace(AppcastUpdaterController::Collaborators{.feed = feed,
                                                                .defaults = defaults,
                                                                .queue = queue,
                                                                .workspace = workspace,
                                                                .user = user,
                                                                .delegate = delegate,
                                                                .now = [this] { return now(); },
                                                                .chance = [] { return 0.0; }},
                        terms);
    }

    [[nodiscard]] std::chrono::sys_seconds now() const
    {
        return start + std::chrono::floor<std::chrono::seconds>(queue.now());
    }

    void offer(const QByteArray &version) { feed.reply(signer.sign(feedOf({{.version = version}}))); }

    /// A look that nobody asked for.
    void look(const QByteArray &version)
    {
        queue.advance(24h);
        ASSERT_TRUE(feed.isAsked());
        offer(version);
    }

    static void expectFailureInTheLog(const char *why)
    {
        expectLogLine(QStringLiteral("LumenFold could not check for updates: ") + QString::fromLatin1(why));
    }

    const FeedSigner signer;
    UpdateTerms terms{
        .publicKey = signer.publicKey(), .version = QStringLiteral("1.0"), .systemVersion = QStringLiteral("2.36")};
    FakeMainQueue queue;
    FakeUserDefaults defaults;
    FakeWorkspace workspace;
    FakeUpdateFeed feed;
    FakeUpdateUserDriver user;
    FakeUpdaterDelegate delegate;
    std::optional<AppcastUpdaterController> updater;
};

TEST_F(AppcastUpdaterControllerTest, NothingIsAskedAtTheStart)
{
    EXPECT_EQ(queue.pendingCount(), 1U);
    queue.advance(5min - 1ms);
    EXPECT_EQ(feed.requests, 0);
    queue.advance(1ms);
    EXPECT_EQ(feed.requests, 1);
    EXPECT_EQ(feed.maximum, 512 * 1024);
}

TEST_F(AppcastUpdaterControllerTest, OneTimerWaitsForTheNextDay)
{
    queue.advance(5min);
    offer("1.0");
    for (int day = 2; day <= 5; ++day) {
        EXPECT_EQ(queue.pendingCount(), 1U);
        queue.advance(24h - 1s);
        EXPECT_EQ(feed.requests, day - 1);
        queue.advance(1s);
        EXPECT_EQ(feed.requests, day);
        offer("1.0");
    }
    EXPECT_EQ(delegate.told, QStringList(5, none));
    EXPECT_TRUE(user.shown.isEmpty());
}

TEST_F(AppcastUpdaterControllerTest, ANewStartKnowsWhenTheLastLookWas)
{
    queue.advance(5min);
    offer("1.0");
    queue.advance(10h);
    restart();
    EXPECT_EQ(queue.pendingDelays(), std::vector<std::chrono::milliseconds>{14h});
    queue.advance(20h);
    EXPECT_EQ(feed.requests, 2);
}

TEST_F(AppcastUpdaterControllerTest, ALookThatNobodyAskedForTellsTheDelegateAndShowsNothing)
{
    look("2.0");
    EXPECT_EQ(delegate.told, QStringList{v2});
    look("1.0");
    EXPECT_EQ(delegate.told, QStringList({v2, none}));
    EXPECT_TRUE(user.shown.isEmpty());
    EXPECT_TRUE(workspace.openedAddresses.isEmpty());
}

TEST_F(AppcastUpdaterControllerTest, AFailureIsToldToNobodyAndNotRepeatedBeforeTheNextDay)
{
    queue.advance(5min);
    expectFailureInTheLog("the feed cannot be had");
    feed.reply(tl::unexpected(UpdateCheckError::unreachable));
    EXPECT_TRUE(delegate.told.isEmpty());
    EXPECT_TRUE(user.shown.isEmpty());
    queue.advance(24h - 1s);
    EXPECT_EQ(feed.requests, 1);
    queue.advance(1s);
    EXPECT_EQ(feed.requests, 2);
}

TEST_F(AppcastUpdaterControllerTest, WhoAsksIsShownWhatIsFound)
{
    updater->checkForUpdates();
    EXPECT_EQ(user.shown, QStringList{checking});
    EXPECT_EQ(feed.requests, 1);
    offer("2.0");
    EXPECT_EQ(user.shown, QStringList({checking, QStringLiteral("update 2.0")}));
    EXPECT_EQ(delegate.told, QStringList{v2});
}

TEST_F(AppcastUpdaterControllerTest, WhoAsksIsToldThatThereIsNone)
{
    updater->checkForUpdates();
    offer("1.0");
    EXPECT_EQ(user.shown, QStringList({checking, QStringLiteral("up to date")}));
    EXPECT_EQ(delegate.told, QStringList{none});
}

TEST_F(AppcastUpdaterControllerTest, WhoAsksIsToldWhatFailed)
{
    const std::vector<std::pair<FakeUpdateFeed::Answer, const char *>> failures{
        {tl::unexpected(UpdateCheckError::unreachable), "the feed cannot be had"},
        {QByteArray("<rss/>"), "the feed cannot be trusted"},
        {signer.sign("<rss/>"), "the feed cannot be read"},
    };
    for (const auto &[answer, why] : failures) {
        updater->checkForUpdates();
        expectFailureInTheLog(why);
        feed.reply(answer);
    }
    EXPECT_EQ(user.shown, QStringList({checking, QStringLiteral("failure 0"), checking, QStringLiteral("failure 1"),
                                       checking, QStringLiteral("failure 2")}));
    EXPECT_TRUE(delegate.told.isEmpty());
}

TEST_F(AppcastUpdaterControllerTest, AskingCountsAsTodaysLook)
{
    updater->checkForUpdates();
    offer("1.0");
    queue.advance(23h);
    EXPECT_EQ(feed.requests, 1);
    EXPECT_EQ(queue.pendingCount(), 1U);
    queue.advance(1h);
    EXPECT_EQ(feed.requests, 2);
}

TEST_F(AppcastUpdaterControllerTest, AskingDuringALookIsTheSameRequest)
{
    queue.advance(5min);
    updater->checkForUpdates();
    updater->checkForUpdates();
    EXPECT_EQ(feed.requests, 1);
    offer("2.0");
    EXPECT_EQ(user.shown, QStringList({checking, checking, QStringLiteral("update 2.0")}));
    EXPECT_EQ(delegate.told, QStringList{v2});
}

TEST_F(AppcastUpdaterControllerTest, WhoDoesNotWaitIsNotDisturbed)
{
    updater->checkForUpdates();
    user.dismiss();
    offer("2.0");
    EXPECT_EQ(user.shown, QStringList{checking});
    EXPECT_EQ(delegate.told, QStringList{v2});
}

TEST_F(AppcastUpdaterControllerTest, AskingWhileAnUpdateIsShownBringsItForward)
{
    updater->checkForUpdates();
    offer("2.0");
    updater->checkForUpdates();
    EXPECT_EQ(feed.requests, 1);
    EXPECT_EQ(user.shown.last(), u"forward");
    user.choose(UpdateChoice::remindLater);
    updater->checkForUpdates();
    EXPECT_EQ(feed.requests, 2);
}

TEST_F(AppcastUpdaterControllerTest, ThePageOfTheUpdateIsOpened)
{
    updater->checkForUpdates();
    offer("2.0");
    user.choose(UpdateChoice::openPage);
    EXPECT_EQ(workspace.openedAddresses, QList<QUrl>{QUrl(QStringLiteral("https://www.lumenfold.example/download"))});
    // It is not there yet.
    EXPECT_EQ(delegate.told, QStringList{v2});
}

TEST_F(AppcastUpdaterControllerTest, WhoWantsToBeRemindedIs)
{
    updater->checkForUpdates();
    offer("2.0");
    user.choose(UpdateChoice::remindLater);
    look("2.0");
    EXPECT_EQ(delegate.told, QStringList({v2, v2}));
    EXPECT_TRUE(workspace.openedAddresses.isEmpty());
}

TEST_F(AppcastUpdaterControllerTest, ASkippedVersionIsNoUpdateAnyMoreAlsoAfterARestart)
{
    updater->checkForUpdates();
    offer("2.0");
    user.choose(UpdateChoice::skipVersion);
    EXPECT_EQ(delegate.told, QStringList({v2, none}));
    look("2.0");
    restart();
    look("2.0.0");
    // A feed that went back.
    look("1.9");
    EXPECT_EQ(delegate.told, QStringList({v2, none, none, none, none}));
    look("3.0");
    EXPECT_EQ(delegate.told.last(), v3);
}

TEST_F(AppcastUpdaterControllerTest, WhoAsksSeesTheSkippedVersionAndHasNotSkippedItAnyMore)
{
    defaults.setString(QStringLiteral("LumenFold.skippedUpdateVersion"), v2);
    updater->checkForUpdates();
    offer("2.0");
    EXPECT_EQ(user.shown.last(), u"update 2.0");
    user.choose(UpdateChoice::remindLater);
    look("2.0");
    EXPECT_EQ(delegate.told, QStringList({v2, v2}));
}

TEST_F(AppcastUpdaterControllerTest, WhatIsStoredMayBeNonsense)
{
    defaults.setRaw(QStringLiteral("LumenFold.lastUpdateCheck"), QStringLiteral("yesterday"));
    defaults.setRaw(QStringLiteral("LumenFold.skippedUpdateVersion"), QStringLiteral("all of them"));
    restart();
    queue.advance(5min);
    offer("2.0");
    EXPECT_EQ(delegate.told, QStringList{v2});
    for (const qint64 seconds : {std::numeric_limits<qint64>::min(), qint64{-1}, std::numeric_limits<qint64>::max()}) {
        defaults.setInteger(QStringLiteral("LumenFold.lastUpdateCheck"), seconds);
        restart();
        EXPECT_EQ(queue.pendingDelays(), std::vector<std::chrono::milliseconds>{5min}) << seconds;
    }
}

TEST_F(AppcastUpdaterControllerTest, WithoutAKeyNobodyIsEverAsked)
{
    terms.publicKey.clear();
    restart();
    EXPECT_EQ(queue.pendingCount(), 0U);
    expectFailureInTheLog("the program was built without a key");
    updater->checkForUpdates();
    EXPECT_EQ(user.shown, QStringList({checking, QStringLiteral("failure 3")}));
    EXPECT_EQ(feed.requests, 0);
    EXPECT_TRUE(defaults.writes().isEmpty());
}

TEST_F(AppcastUpdaterControllerTest, OnceItIsGoneNothingReachesAnybody)
{
    updater->checkForUpdates();
    updater.reset();
    EXPECT_EQ(queue.pendingCount(), 0U);
    offer("2.0");
    user.dismiss();
    EXPECT_TRUE(delegate.told.isEmpty());
    EXPECT_EQ(user.shown, QStringList{checking});
}

} // namespace
} // namespace lumenfold::test
