#include "tests/unit/lifecycle/AppDelegateFixture.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const QString privacyPane =
    QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture");

using AppDelegateTest = AppDelegateFixture;

TEST_F(AppDelegateTest, WithThePermissionThereIsNoAlertNoRequestAndNoSettingsPane)
{
    launch();
    EXPECT_FALSE(journal.contains(QStringLiteral("request")));
    EXPECT_EQ(permissions.requests, 0);
    EXPECT_TRUE(alerts.shown.isEmpty());
    EXPECT_TRUE(workspace.openedAddresses.isEmpty());
}

TEST_F(AppDelegateTest, EverythingComesInItsOrder)
{
    removeKey();
    hotKeys.onRegister = [this] { journal.append(QStringLiteral("register")); };
    launch();
    EXPECT_EQ(journal, QStringList({QStringLiteral("setActivationPolicy 1"), QStringLiteral("preflight"),
                                    QStringLiteral("start updater"), QStringLiteral("make coordinator"),
                                    QStringLiteral("make menu"), QStringLiteral("make hotkey manager"),
                                    QStringLiteral("register"), QStringLiteral("register"), QStringLiteral("register"),
                                    QStringLiteral("ask for the key"), QStringLiteral("restore cards"),
                                    QStringLiteral("publish actions")}));
}

TEST_F(AppDelegateTest, TheShortcutsAreNotFollowedBeforeTheCardsAreBack)
{
    // What changes while the cards come back is what was bound a moment ago.
    cardStore.onRead = [this] { notifications.post(ShortcutStore::changedNotification); };
    launch();
    EXPECT_EQ(hotKeys.registrationAttempts().size(), 3U);
    notifications.post(ShortcutStore::changedNotification);
    EXPECT_EQ(hotKeys.registrationAttempts().size(), 6U);
}

TEST_F(AppDelegateTest, TheMenuIsThereAndQuits)
{
    launch();
    ASSERT_TRUE(statusArea.hasItem);
    EXPECT_EQ(statusArea.titles().first(), QStringLiteral("Capture Full Screen"));
    EXPECT_TRUE(statusArea.click(QStringLiteral("Quit")));
    EXPECT_EQ(workspace.terminations, 1);
}

TEST_F(AppDelegateTest, TheDesktopReachesTheCapturesTheSettingsAndTheEnd)
{
    launch();
    EXPECT_EQ(remoteActions.names(),
              QStringList({QStringLiteral("capture-area"), QStringLiteral("capture-full-screen"),
                           QStringLiteral("capture-last-area"), QStringLiteral("quit"), QStringLiteral("settings")}));
    remoteActions.perform(QStringLiteral("capture-full-screen"));
    queue.advance(60ms);
    EXPECT_EQ(screenshots.captures.size(), 1U);
    queue.advance(1s);
    const std::size_t cardsOnly = panels.panels().size();
    remoteActions.perform(QStringLiteral("capture-last-area"));
    EXPECT_EQ(panels.panels().size(), cardsOnly + 1);
    // One capture at a time.
    remoteActions.perform(QStringLiteral("capture-area"));
    EXPECT_EQ(panels.panels().size(), cardsOnly + 1);
    remoteActions.activate();
    remoteActions.perform(QStringLiteral("settings"));
    EXPECT_EQ(settingsWindow.presentations, 2);
    remoteActions.perform(QStringLiteral("quit"));
    EXPECT_EQ(workspace.terminations, 1);
}

TEST_F(AppDelegateTest, WithoutAKeyTheUserIsAskedForOneBeforeTheCardsAreBack)
{
    removeKey();
    launch();
    EXPECT_EQ(apiKeySetup.presentations, 1);
    EXPECT_GT(journal.indexOf(QStringLiteral("ask for the key")),
              journal.indexOf(QStringLiteral("make hotkey manager")));
    EXPECT_LT(journal.indexOf(QStringLiteral("ask for the key")), journal.indexOf(QStringLiteral("restore cards")));
}

TEST_F(AppDelegateTest, WithAKeyNobodyIsAsked)
{
    launch();
    EXPECT_EQ(apiKeySetup.presentations, 0);
}

TEST_F(AppDelegateTest, ALockedKeyIsAKey)
{
    keyring.setLocked(true);
    launch();
    EXPECT_EQ(apiKeySetup.presentations, 0);
    EXPECT_TRUE(keyring.operations.isEmpty());
}

TEST_F(AppDelegateTest, TheStartDoesNotWaitForTheKeyring)
{
    removeKey();
    keyring.keepSilent();
    launch();
    EXPECT_EQ(bound(), captures);
    EXPECT_TRUE(journal.contains(QStringLiteral("restore cards")));
    EXPECT_EQ(apiKeySetup.presentations, 0);
    keyring.answer();
    EXPECT_EQ(apiKeySetup.presentations, 1);
}

TEST_F(AppDelegateTest, AKeyringThatNeverAnswersIsNotTakenForAnEmptyOne)
{
    keyring.keepSilent();
    launch();
    keyring.giveUp();
    EXPECT_EQ(apiKeySetup.presentations, 0);
}

TEST_F(AppDelegateTest, AnAnswerAfterTheEndAsksNobody)
{
    removeKey();
    keyring.keepSilent();
    launch();
    delegate.reset();
    keyring.answer();
    EXPECT_EQ(apiKeySetup.presentations, 0);
}

TEST_F(AppDelegateTest, WithoutThePermissionTheStartWaitsForTheUser)
{
    permissions.isGranted = false;
    launch();
    EXPECT_EQ(journal,
              QStringList({QStringLiteral("setActivationPolicy 1"), QStringLiteral("preflight"),
                           QStringLiteral("request"), QStringLiteral("open ") + privacyPane, QStringLiteral("activate"),
                           QStringLiteral("alert Enable Screen Recording for LumenFold")}));
    EXPECT_TRUE(hotKeys.registrationAttempts().empty());

    ASSERT_TRUE(alerts.answer(1001));
    EXPECT_EQ(workspace.openedAddresses.size(), 1);
    EXPECT_EQ(bound(), captures);
}

TEST_F(AppDelegateTest, TheFirstButtonOpensTheSettingsPaneOnceMore)
{
    permissions.isGranted = false;
    alerts.answerNextWith(1000);
    launch();
    EXPECT_EQ(workspace.openedAddresses, QList<QUrl>({QUrl(privacyPane), QUrl(privacyPane)}));
    EXPECT_EQ(bound(), captures);
}

TEST_F(AppDelegateTest, AnAlertThatIsAnsweredAfterTheEndChangesNothing)
{
    permissions.isGranted = false;
    launch();
    delegate->applicationWillTerminate();
    delegate.reset();
    EXPECT_TRUE(alerts.answer(1000));
    EXPECT_EQ(workspace.openedAddresses.size(), 1);
    EXPECT_TRUE(hotKeys.registrationAttempts().empty());
}

TEST_F(AppDelegateTest, AnActionOfTheCommandLineIsCarriedOutALittleLater)
{
    launch();
    delegate->carryOut(QStringLiteral("capture-full-screen"));
    delegate->carryOut(QStringLiteral("format-disk"));
    delegate->carryOut({});
    queue.advance(60ms);
    EXPECT_THAT(screenshots.captures, IsEmpty());
    QCoreApplication::processEvents();
    queue.advance(60ms);
    EXPECT_EQ(screenshots.captures.size(), 1U);
}

TEST_F(AppDelegateTest, TheEndSavesTheListOfCards)
{
    launch();
    cardStore.calls.clear();
    delegate->applicationWillTerminate();
    EXPECT_EQ(cardStore.calls, QStringList{QStringLiteral("manifest")});
    // The hotkeys go with the process.
    EXPECT_EQ(bound(), captures);
}

TEST_F(AppDelegateTest, OnceTheDelegateIsGoneNothingReachesIt)
{
    launch();
    EXPECT_EQ(taps.press(fullScreen.first, keyFlags::option | keyFlags::command), TapDisposition::swallow);
    delegate.reset();
    queue.advance(100ms);
    EXPECT_THAT(screenshots.captures, IsEmpty());
    shortcuts.postRecording(false);
    EXPECT_THAT(bound(), IsEmpty());
    EXPECT_FALSE(statusArea.hasItem);
    remoteActions.activate();
    remoteActions.perform(QStringLiteral("capture-full-screen"));
    remoteActions.perform(QStringLiteral("quit"));
    EXPECT_EQ(settingsWindow.presentations, 0);
    EXPECT_EQ(workspace.terminations, 0);
    EXPECT_THAT(screenshots.captures, IsEmpty());
}

} // namespace
} // namespace lumenfold::test
