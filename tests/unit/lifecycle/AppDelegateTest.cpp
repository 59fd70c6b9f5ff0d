#include "app/lifecycle/AppDelegate.h"

#include "app/actions/ActionHandler.h"
#include "app/menubar/MenuBarController.h"
#include "app/updates/UpdaterController.h"
#include "capture/CaptureCoordinator.h"
#include "capture/areaselection/AreaSelectionController.h"
#include "cards/PreviewWindowController.h"
#include "platform/keyboard/KeyEvent.h"
#include "shortcuts/HotkeyManager.h"
#include "shortcuts/ShortcutStore.h"
#include "tests/support/fakes/FakeAccount.h"
#include "tests/support/fakes/FakeAlerts.h"
#include "tests/support/fakes/FakeCardStore.h"
#include "tests/support/fakes/FakeCardViews.h"
#include "tests/support/fakes/FakeEventMonitors.h"
#include "tests/support/fakes/FakeHotKeyService.h"
#include "tests/support/fakes/FakeKeyEventTap.h"
#include "tests/support/fakes/FakePanel.h"
#include "tests/support/fakes/FakePasteboard.h"
#include "tests/support/fakes/FakePermissions.h"
#include "tests/support/fakes/FakeRemoteActions.h"
#include "tests/support/fakes/FakeScreenshotManager.h"
#include "tests/support/fakes/FakeService.h"
#include "tests/support/fakes/FakeSettingsWindow.h"
#include "tests/support/fakes/FakeStatusItem.h"
#include "tests/support/fakes/FakeWindowList.h"
#include "tests/support/fakes/FakeWorkspace.h"
#include "tests/support/unit/LogWatch.h"

#include <QCoreApplication>
#include <QStringList>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr qint64 ownPid = 100;
const QString privacyPane =
    QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture");

/// A card store that tells when it is read.
class WatchedCardStore : public FakeCardStore {
public:
    std::vector<PersistedCard> readManifest() override
    {
        if (onRead) {
            onRead();
        }
        return FakeCardStore::readManifest();
    }

    std::function<void()> onRead;
};

/// The real coordinator and the real hotkey manager on fake platform services.
class AppDelegateTest : public ::testing::Test, protected FakeAccount {
protected:
    AppDelegateTest()
    {
        const auto note = [this](const QString &call) { journal.append(call); };
        workspace.onCall = note;
        permissions.onCall = note;
        alerts.onCall = note;
        cardStore.onRead = [this] { journal.append(QStringLiteral("restore cards")); };
        remoteActions.onPublish = [this] { journal.append(QStringLiteral("publish actions")); };
        apiKeySetup.onPresent = [this] { journal.append(QStringLiteral("ask for the key")); };
        // Most users have a key.
        putKey("key");
    }

    std::unique_ptr<CaptureCoordinator> makeCoordinator()
    {
        journal.append(QStringLiteral("make coordinator"));
        const ScreenCaptureService service(screenshots, screens, ownPid);
        auto cards = std::make_unique<PreviewWindowController>(PreviewWindowController::Collaborators{
            .panels = panels,
            .monitors = monitors,
            .screens = screens,
            .config = config,
            .queue = queue,
            .views = cardViews,
            .store = &cardStore,
        });
        cardController = cards.get();
        return std::make_unique<CaptureCoordinator>(CaptureCoordinator::Collaborators{
            .captureService = service,
            .areaController = std::make_unique<AreaSelectionController>(
                AreaSelectionController::Collaborators{panels, screens, windowList, queue, service, ownPid}),
            .previewController = std::move(cards),
            .actions = actions,
            .screens = screens,
            .defaults = defaults,
            .queue = queue,
            .alerts = alerts,
            .workspace = workspace,
            .editorWindow = {},
        });
    }

    std::unique_ptr<MenuBarController> makeMenuBarController(CaptureCoordinator &coordinator)
    {
        journal.append(QStringLiteral("make menu"));
        return std::make_unique<MenuBarController>(MenuBarController::Collaborators{
            .statusItem = statusArea.makeItem(),
            .coordinator = coordinator,
            .auth = auth,
            .shortcuts = shortcuts,
            .updater = updater,
            .notifications = notifications,
            .queue = queue,
            .workspace = workspace,
            .apiKeySetup = apiKeySetup,
            .settings = settingsWindow,
        });
    }

    std::unique_ptr<HotkeyManager> makeHotkeyManager()
    {
        journal.append(QStringLiteral("make hotkey manager"));
        return std::make_unique<HotkeyManager>(taps, hotKeys, queue);
    }

    void launch()
    {
        expectLogLine(permissions.isGranted ? QStringLiteral("LumenFold screen-recording preflight: true")
                                            : QStringLiteral("LumenFold screen-recording preflight: false"));
        delegate->applicationDidFinishLaunching();
    }

    void reportUndo(bool available) { cardController->onUndoAvailabilityChanged(available); }

    /// Key code and modifiers of what is registered with the platform.
    [[nodiscard]] std::set<std::pair<std::uint32_t, std::uint32_t>> bound() const
    {
        std::set<std::pair<std::uint32_t, std::uint32_t>> combinations;
        for (const FakeHotKeyService::HotKey &hotKey : hotKeys.registered()) {
            combinations.emplace(hotKey.keyCode, hotKey.carbonModifiers);
        }
        return combinations;
    }

    [[nodiscard]] std::uint32_t idOf(std::uint32_t keyCode) const
    {
        for (const FakeHotKeyService::HotKey &hotKey : hotKeys.registered()) {
            if (hotKey.keyCode == keyCode) {
                return hotKey.id.id;
            }
        }
        return 0;
    }

    /// Option and command held.
    void press(std::uint32_t keyCode)
    {
        EXPECT_EQ(taps.press(keyCode, keyFlags::option | keyFlags::command), TapDisposition::swallow);
        queue.runPosted();
    }

    static constexpr std::pair<std::uint32_t, std::uint32_t> fullScreen{18, 0x0900};
    static constexpr std::pair<std::uint32_t, std::uint32_t> area{19, 0x0900};
    static constexpr std::pair<std::uint32_t, std::uint32_t> lastArea{20, 0x0900};
    static constexpr std::pair<std::uint32_t, std::uint32_t> undo{6, 0x0100};
    using Bound = std::set<std::pair<std::uint32_t, std::uint32_t>>;
    const Bound captures{fullScreen, area, lastArea};
    const Bound capturesAndUndo{fullScreen, area, lastArea, undo};

    QStringList journal;
    FakePasteboard pasteboard;
    ActionHandler actions{pasteboard, config};
    FakeScreenshotManager screenshots;
    FakeWindowList windowList;
    FakePanelFactory panels{queue};
    FakeEventMonitors monitors;
    FakeCardViews cardViews;
    WatchedCardStore cardStore;
    FakeKeyEventTapService taps;
    FakeHotKeyService hotKeys;
    FakeWorkspace workspace;
    FakePermissions permissions;
    FakeAlerts alerts;
    ShortcutStore shortcuts{defaults, notifications};
    FakeApiKeySetupWindow apiKeySetup;
    FakeSettingsWindow settingsWindow;
    FakeStatusArea statusArea;
    FakeRemoteActions remoteActions;
    UpdaterController updater{notifications, [](UpdaterDelegate &) { return nullptr; }};
    PreviewWindowController *cardController = nullptr;
    std::unique_ptr<AppDelegate> delegate = std::make_unique<AppDelegate>(AppDelegate::Collaborators{
        .workspace = workspace,
        .permissions = permissions,
        .alerts = alerts,
        .notifications = notifications,
        .shortcuts = shortcuts,
        .auth = auth,
        .apiKeySetup = apiKeySetup,
        .remoteActions = remoteActions,
        .settings = settingsWindow,
        .startUpdater = [this] { journal.append(QStringLiteral("start updater")); },
        .makeCaptureCoordinator = [this] { return makeCoordinator(); },
        .makeMenuBarController = [this](CaptureCoordinator &coordinator) { return makeMenuBarController(coordinator); },
        .makeHotkeyManager = [this] { return makeHotkeyManager(); },
        .productName = QStringLiteral("LumenFold"),
    });
};

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

TEST_F(AppDelegateTest, TheThreeCapturesAreBoundInTheirOrder)
{
    launch();
    ASSERT_EQ(hotKeys.registrationAttempts().size(), 3U);
    EXPECT_EQ(hotKeys.registrationAttempts()[0].keyCode, 18U);
    EXPECT_EQ(hotKeys.registrationAttempts()[1].keyCode, 19U);
    EXPECT_EQ(hotKeys.registrationAttempts()[2].keyCode, 20U);
    EXPECT_EQ(bound(), captures);
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

TEST_F(AppDelegateTest, EachHotkeyRunsItsCapture)
{
    launch();
    press(fullScreen.first);
    queue.advance(60ms);
    ASSERT_EQ(screenshots.captures.size(), 1U);
    EXPECT_FALSE(screenshots.captures[0].configuration.sourceRect);
    EXPECT_EQ(pasteboard.images.size(), 1U);

    // The selector covers the one screen until it is cancelled.
    const std::size_t cardsOnly = panels.panels().size();
    press(area.first);
    EXPECT_EQ(panels.panels().size(), cardsOnly + 1);
    EXPECT_TRUE(panels.lastPanel()->isVisible());
}

TEST_F(AppDelegateTest, TheLastAreaIsTakenAgain)
{
    defaults.setRaw(QStringLiteral("LumenFold.lastAreaRect"), std::vector<double>{10, 20, 300, 200});
    launch();
    press(lastArea.first);
    queue.advance(60ms);
    ASSERT_EQ(screenshots.captures.size(), 1U);
    EXPECT_EQ(screenshots.captures[0].configuration.width, 300);
    EXPECT_EQ(screenshots.captures[0].configuration.height, 200);
}

TEST_F(AppDelegateTest, ChosenShortcutsAreBoundInPlaceOfTheDefaults)
{
    shortcuts.set({.keyCode = 0, .carbonModifiers = 0x1000, .display = QStringLiteral("⌃A")},
                  ShortcutStore::Action::area);
    launch();
    EXPECT_EQ(bound(), (Bound{fullScreen, {0, 0x1000}, lastArea}));
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

TEST_F(AppDelegateTest, UndoIsBoundExactlyWhileThereIsSomethingToUndo)
{
    launch();
    reportUndo(false);
    EXPECT_EQ(hotKeys.registrationAttempts().size(), 3U);

    reportUndo(true);
    reportUndo(true);
    EXPECT_EQ(hotKeys.registrationAttempts().size(), 4U);
    EXPECT_EQ(bound(), capturesAndUndo);

    reportUndo(false);
    EXPECT_EQ(bound(), captures);
    reportUndo(false);
    EXPECT_EQ(bound(), captures);

    reportUndo(true);
    EXPECT_EQ(bound(), capturesAndUndo);
}

TEST_F(AppDelegateTest, AChangedShortcutBindsEverythingAnewUndoIncluded)
{
    launch();
    reportUndo(true);
    const std::uint32_t firstId = idOf(undo.first);
    shortcuts.set({.keyCode = 7, .carbonModifiers = 0x0100, .display = QStringLiteral("⌘X")},
                  ShortcutStore::Action::undo);
    EXPECT_EQ(bound(), (Bound{fullScreen, area, lastArea, {7, 0x0100}}));
    EXPECT_GT(idOf(7), firstId);

    // The new id is the one that goes when undo is over.
    reportUndo(false);
    EXPECT_EQ(bound(), captures);
}

TEST_F(AppDelegateTest, WhileAShortcutIsRecordedNothingIsBound)
{
    launch();
    reportUndo(true);
    shortcuts.postRecording(true);
    EXPECT_THAT(bound(), IsEmpty());
    EXPECT_EQ(taps.openTaps(), 0U);
    shortcuts.postRecording(false);
    EXPECT_EQ(bound(), capturesAndUndo);
}

TEST_F(AppDelegateTest, UndoThatEndsDuringARecordingStaysUnbound)
{
    launch();
    reportUndo(true);
    shortcuts.postRecording(true);
    reportUndo(false);
    shortcuts.postRecording(false);
    EXPECT_EQ(bound(), captures);
}

TEST_F(AppDelegateTest, ARecordingNotificationThatDoesNotSayTrueMeansFalse)
{
    launch();
    const std::uint32_t before = idOf(fullScreen.first);
    for (const QVariantMap &userInfo :
         {QVariantMap(), QVariantMap{{QStringLiteral("recording"), QStringLiteral("true")}},
          QVariantMap{{QStringLiteral("recording"), 1}}, QVariantMap{{QStringLiteral("Recording"), true}}}) {
        notifications.post(ShortcutStore::recordingNotification, nullptr, userInfo);
        EXPECT_EQ(bound(), captures);
    }
    // Bound anew each time.
    EXPECT_EQ(idOf(fullScreen.first), before + 4 * 3);
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
