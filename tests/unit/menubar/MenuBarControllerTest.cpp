#include "app/menubar/MenuBarController.h"

#include "app/menubar/MenuBarImages.h"
#include "app/updates/UpdaterController.h"
#include "platform/keyboard/KeyEvent.h"
#include "platform/notifications/NotificationCenter.h"
#include "service/AuthService.h"
#include "service/KeychainHelper.h"
#include "service/http/HttpClient.h"
#include "shortcuts/ShortcutStore.h"
#include "tests/support/fakes/FakeSecretStore.h"
#include "tests/support/fakes/FakeService.h"
#include "tests/support/fakes/FakeSettingsWindow.h"
#include "tests/support/fakes/FakeStatusItem.h"
#include "tests/support/fakes/FakeUpdater.h"
#include "tests/unit/capture/CaptureCoordinatorFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumenfold::test {
namespace {

using namespace std::chrono_literals;
using ::testing::IsEmpty;

const QString updateAvailable = QStringLiteral("Update Available…");
const QString captureFullScreen = QStringLiteral("Capture Full Screen");
const QString captureArea = QStringLiteral("Capture Area");
const QString captureLastArea = QStringLiteral("Capture Last Area");
const QString connectedTo = QStringLiteral("Connected to LumenFold");
const QString disconnect = QStringLiteral("Disconnect");
const QString connectWithKey = QStringLiteral("Connect with API Key…");
const QString checkForUpdates = QStringLiteral("Check for Updates…");
const QString settings = QStringLiteral("Settings…");
const QString quit = QStringLiteral("Quit");
const QString separator = QStringLiteral("-");

/// With the real coordinator, account, shortcuts and updater on fake platform services.
class MenuBarControllerTest : public CaptureCoordinatorTest {
protected:
    enum class Updates { ofTheProgram, ofTheDistribution };

    void make(Updates updates = Updates::ofTheProgram)
    {
        updater = std::make_unique<UpdaterController>(
            notifications, [updates](UpdaterDelegate &delegate) -> std::unique_ptr<StandardUpdaterController> {
                if (updates == Updates::ofTheDistribution) {
                    return nullptr;
                }
                return std::make_unique<FakeUpdater>(delegate);
            });
        makeController();
    }

    void makeController()
    {
        controller = std::make_unique<MenuBarController>(MenuBarController::Collaborators{
            .statusItem = area.makeItem(),
            .coordinator = *coordinator,
            .auth = auth,
            .shortcuts = shortcuts,
            .updater = *updater,
            .notifications = notifications,
            .queue = queue,
            .workspace = workspace,
            .apiKeySetup = apiKeySetup,
            .settings = settingsWindow,
        });
    }

    void signInAs(const std::optional<QString> &email)
    {
        if (email) {
            defaults.setRaw(QStringLiteral("LumenFold.userEmail"), *email);
        }
        secrets.putFromOutside(apiKeyItem, "key");
        queue.runPosted();
    }

    [[nodiscard]] FakeUpdater &fakeUpdater() const { return dynamic_cast<FakeUpdater &>(*updater->controller()); }
    void findUpdate() const { fakeUpdater().delegate.didFindValidUpdate({.version = QStringLiteral("2.0")}); }
    void findNone() const { fakeUpdater().delegate.updaterDidNotFindUpdate(); }

    FakeStatusArea area;
    NotificationCenter notifications;
    ShortcutStore shortcuts{defaults, notifications};
    const SecretKey apiKeyItem{.service = KeychainHelper::service, .account = AuthService::keychainKey};
    FakeSecretStore secrets;
    KeychainHelper keychain{secrets};
    HttpClient http;
    AuthService auth{{.http = http,
                      .config = config,
                      .keychain = keychain,
                      .defaults = defaults,
                      .notifications = notifications,
                      .queue = queue}};
    FakeApiKeySetupWindow apiKeySetup;
    FakeSettingsWindow settingsWindow;
    std::unique_ptr<UpdaterController> updater;
    std::unique_ptr<MenuBarController> controller;
};

TEST_F(MenuBarControllerTest, TheMenuOfSomebodyWhoIsNotConnected)
{
    make();
    EXPECT_EQ(area.titles(), QStringList({captureFullScreen, captureArea, captureLastArea, separator, connectWithKey,
                                          separator, checkForUpdates, separator, settings, separator, quit}));
    for (const MenuItem &item : area.menu) {
        EXPECT_TRUE(item.isEnabled) << qPrintable(item.title);
        EXPECT_EQ(bool(item.action), item.kind == MenuItem::Kind::command) << qPrintable(item.title);
        EXPECT_TRUE(item.image.isNull());
    }
}

TEST_F(MenuBarControllerTest, TheMenuOfSomebodyWhoIsConnected)
{
    signInAs(QStringLiteral("ada@example.org"));
    make();
    const QString account = QStringLiteral("Connected · ada@example.org");
    EXPECT_EQ(area.titles(),
              QStringList({captureFullScreen, captureArea, captureLastArea, separator, account, disconnect, separator,
                           checkForUpdates, separator, settings, separator, quit}));
    EXPECT_FALSE(area.item(account)->isEnabled);
    EXPECT_FALSE(area.item(account)->action);
    EXPECT_EQ(area.item(account)->target, nullptr);
    EXPECT_TRUE(area.item(disconnect)->isEnabled);
}

TEST_F(MenuBarControllerTest, WithoutAStoredEmailItSaysConnectedToLumenFold)
{
    signInAs(std::nullopt);
    make();
    ASSERT_NE(area.item(connectedTo), nullptr);
    EXPECT_FALSE(area.item(connectedTo)->isEnabled);

    signInAs(QString());
    make();
    EXPECT_NE(area.item(connectedTo), nullptr);
}

TEST_F(MenuBarControllerTest, ThePictureIsThereBeforeTheBadgeAndTheMenu)
{
    QStringList calls;
    area.onCall = [&calls](const QString &call) { calls.append(call); };
    make();
    EXPECT_EQ(calls, QStringList({QStringLiteral("setImage"), QStringLiteral("setUpdateBadgeVisible false"),
                                  QStringLiteral("setMenu")}));
    EXPECT_EQ(area.image, menuBarImage());
}

TEST_F(MenuBarControllerTest, AnUpdateShowsInTheMenuAndAsABadge)
{
    make();
    EXPECT_EQ(area.titles().first(), captureFullScreen);
    EXPECT_FALSE(area.isBadgeVisible);
    findUpdate();
    queue.runPosted();
    EXPECT_EQ(area.titles().mid(0, 3), QStringList({updateAvailable, separator, captureFullScreen}));
    EXPECT_EQ(area.titles().count(checkForUpdates), 1);
    EXPECT_EQ(area.item(updateAvailable)->image, updateDotImage());
    EXPECT_TRUE(area.isBadgeVisible);

    findNone();
    queue.runPosted();
    EXPECT_EQ(area.titles().first(), captureFullScreen);
    EXPECT_FALSE(area.isBadgeVisible);
}

TEST_F(MenuBarControllerTest, AnUpdateThatWasFoundBeforeIsThereFromTheStart)
{
    make();
    findUpdate();
    makeController();
    EXPECT_EQ(area.titles().first(), updateAvailable);
    EXPECT_TRUE(area.isBadgeVisible);
}

TEST_F(MenuBarControllerTest, ASecondCheckThatFindsNothingNewBuildsNothing)
{
    make();
    const int before = area.menus;
    findNone();
    queue.runPosted();
    EXPECT_EQ(area.menus, before);
    findUpdate();
    findUpdate();
    queue.runPosted();
    EXPECT_EQ(area.menus, before + 1);
}

TEST_F(MenuBarControllerTest, BothUpdateEntriesCheckForUpdates)
{
    make();
    findUpdate();
    queue.runPosted();
    EXPECT_TRUE(area.click(checkForUpdates));
    EXPECT_EQ(fakeUpdater().checks, 1);
    EXPECT_TRUE(area.click(updateAvailable));
    EXPECT_EQ(fakeUpdater().checks, 2);
}

TEST_F(MenuBarControllerTest, EveryActionGoesToTheControllerAndTheCheckToTheUpdater)
{
    make();
    findUpdate();
    queue.runPosted();
    for (const MenuItem &item : area.menu) {
        const MenuTarget expected = !item.action                    ? nullptr
                                    : item.title == checkForUpdates ? static_cast<MenuTarget>(updater->controller())
                                                                    : controller.get();
        EXPECT_EQ(item.target, expected) << qPrintable(item.title);
    }
}

TEST_F(MenuBarControllerTest, WhereTheDistributionUpdatesTheMenuHasNoUpdateEntries)
{
    make(Updates::ofTheDistribution);
    EXPECT_EQ(area.titles(), QStringList({captureFullScreen, captureArea, captureLastArea, separator, connectWithKey,
                                          separator, settings, separator, quit}));
    updater->setHasAvailableUpdate(true);
    queue.runPosted();
    EXPECT_EQ(area.titles().first(), captureFullScreen);
}

TEST_F(MenuBarControllerTest, TheDefaultKeys)
{
    make();
    const auto expectKey = [this](const QString &title, const QString &key, std::uint64_t mask) {
        EXPECT_EQ(area.item(title)->keyEquivalent, key) << qPrintable(title);
        EXPECT_EQ(area.item(title)->keyEquivalentModifierMask, mask) << qPrintable(title);
    };
    expectKey(captureFullScreen, QStringLiteral("1"), keyFlags::option | keyFlags::command);
    expectKey(captureArea, QStringLiteral("2"), keyFlags::option | keyFlags::command);
    expectKey(captureLastArea, QStringLiteral("3"), keyFlags::option | keyFlags::command);
    expectKey(settings, QStringLiteral(","), keyFlags::command);
    expectKey(quit, QStringLiteral("q"), keyFlags::command);
    expectKey(checkForUpdates, QString(), 0);
    expectKey(connectWithKey, QString(), 0);
}

TEST_F(MenuBarControllerTest, AChangedShortcutChangesTheKeyOfItsItem)
{
    make();
    shortcuts.set({.keyCode = 1, .carbonModifiers = 0x0A00, .display = QStringLiteral("⌥⇧S")},
                  ShortcutStore::Action::area);
    EXPECT_EQ(area.item(captureArea)->keyEquivalent, QStringLiteral("2"));
    queue.runPosted();
    EXPECT_EQ(area.item(captureArea)->keyEquivalent, QStringLiteral("s"));
    EXPECT_EQ(area.item(captureArea)->keyEquivalentModifierMask, keyFlags::option | keyFlags::shift);
}

TEST_F(MenuBarControllerTest, AFunctionKeyIsNoKeyEquivalent)
{
    shortcuts.set({.keyCode = 96, .carbonModifiers = 0, .display = QStringLiteral("F5")},
                  ShortcutStore::Action::fullScreen);
    make();
    EXPECT_EQ(area.item(captureFullScreen)->keyEquivalent, QString());
}

TEST_F(MenuBarControllerTest, SigningInAndOutChangesTheMenuInALaterTurn)
{
    make();
    const int before = area.menus;
    notifications.post(AuthService::authStateChangedNotification);
    EXPECT_EQ(area.menus, before);
    queue.runPosted();
    EXPECT_EQ(area.menus, before + 1);

    signInAs(QStringLiteral("ada@example.org"));
    queue.runPosted();
    ASSERT_NE(area.item(disconnect), nullptr);
    EXPECT_TRUE(area.click(disconnect));
    queue.runPosted();
    queue.runPosted();
    EXPECT_FALSE(auth.isSignedIn());
    EXPECT_NE(area.item(connectWithKey), nullptr);
}

TEST_F(MenuBarControllerTest, EachEntryDoesWhatItSays)
{
    make();
    EXPECT_TRUE(area.click(connectWithKey));
    EXPECT_EQ(apiKeySetup.presentations, 1);
    EXPECT_TRUE(area.click(settings));
    EXPECT_EQ(settingsWindow.presentations, 1);
    EXPECT_EQ(workspace.terminations, 0);
    EXPECT_TRUE(area.click(quit));
    EXPECT_EQ(workspace.terminations, 1);

    EXPECT_TRUE(area.click(captureFullScreen));
    queue.advance(60ms);
    EXPECT_EQ(manager.captures.size(), 1U);
    queue.advance(1s);

    // Without a last area both ask for one.
    EXPECT_TRUE(area.click(captureLastArea));
    queue.advance(60ms);
    EXPECT_EQ(overlays().size(), 1U);
    select({10, 20}, {310, 220});
    queue.advance(1s);
    EXPECT_TRUE(overlays().empty());
    EXPECT_TRUE(area.click(captureLastArea));
    queue.advance(1s);
    EXPECT_EQ(manager.captures.size(), 3U);
    EXPECT_TRUE(area.click(captureArea));
    queue.advance(60ms);
    EXPECT_EQ(overlays().size(), 1U);
}

TEST_F(MenuBarControllerTest, OnceItIsGoneNothingReachesIt)
{
    make();
    const Menu menu = area.menu;
    notifications.post(AuthService::authStateChangedNotification);
    findUpdate();
    const int before = area.menus;
    controller.reset();
    queue.runPosted();
    EXPECT_EQ(area.menus, before);
    EXPECT_FALSE(area.hasItem);
    for (const MenuItem &item : menu) {
        if (item.action) {
            item.action();
        }
    }
    EXPECT_EQ(workspace.terminations, 0);
    EXPECT_EQ(fakeUpdater().checks, 0);
}

} // namespace
} // namespace lumenfold::test
