#pragma once

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

#include <QStringList>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <set>
#include <utility>
#include <vector>

namespace lumenfold::test {

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
class AppDelegateFixture : public ::testing::Test, protected FakeAccount {
protected:
    static constexpr qint64 ownPid = 100;

    AppDelegateFixture()
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

} // namespace lumenfold::test
