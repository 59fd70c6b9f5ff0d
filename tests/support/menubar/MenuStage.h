#pragma once

#include "app/actions/ActionHandler.h"
#include "app/menubar/MenuBarController.h"
#include "app/updates/UpdaterController.h"
#include "capture/CaptureCoordinator.h"
#include "capture/areaselection/AreaSelectionController.h"
#include "cards/PreviewWindowController.h"
#include "shortcuts/ShortcutStore.h"
#include "tests/support/fakes/FakeAccount.h"
#include "tests/support/fakes/FakeAlerts.h"
#include "tests/support/fakes/FakeCardViews.h"
#include "tests/support/fakes/FakeEventMonitors.h"
#include "tests/support/fakes/FakePanel.h"
#include "tests/support/fakes/FakePasteboard.h"
#include "tests/support/fakes/FakeScreenshotManager.h"
#include "tests/support/fakes/FakeService.h"
#include "tests/support/fakes/FakeSettingsWindow.h"
#include "tests/support/fakes/FakeUpdater.h"
#include "tests/support/fakes/FakeWindowList.h"
#include "tests/support/fakes/FakeWorkspace.h"

#include <memory>
#include <utility>

namespace lumenfold::test {

/// The program's menu with all that it stands on, for programs that look at it or measure it.
class MenuStage : private FakeAccount {
public:
    explicit MenuStage(std::unique_ptr<StatusItem> statusItem)
        : m_controller({.statusItem = std::move(statusItem),
                        .coordinator = m_coordinator,
                        .auth = auth,
                        .shortcuts = m_shortcuts,
                        .updater = m_updater,
                        .notifications = notifications,
                        .queue = queue,
                        .workspace = m_workspace,
                        .apiKeySetup = m_apiKeySetup,
                        .settings = m_settings})
    {
    }

    void connectAs(const QString &email)
    {
        defaults.setRaw(AuthService::emailDefaultsKey, email);
        putKey("key");
        queue.runPosted();
    }

    void findUpdate()
    {
        m_updater.setHasAvailableUpdate(true);
        queue.runPosted();
    }

    void rebuild()
    {
        notifications.post(ShortcutStore::changedNotification);
        queue.runPosted();
    }

private:
    static constexpr qint64 ownProcess = 100;

    FakePasteboard m_pasteboard;
    ActionHandler m_actions{m_pasteboard, config};
    FakePanelFactory m_panels{queue};
    FakeEventMonitors m_monitors;
    FakeCardViews m_views;
    FakeWindowList m_windows;
    FakeScreenshotManager m_screenshots;
    FakeAlerts m_alerts;
    FakeWorkspace m_workspace;
    ShortcutStore m_shortcuts{defaults, notifications};
    UpdaterController m_updater{notifications,
                                [](UpdaterDelegate &delegate) { return std::make_unique<FakeUpdater>(delegate); }};
    FakeApiKeySetupWindow m_apiKeySetup;
    FakeSettingsWindow m_settings;
    ScreenCaptureService m_captureService{m_screenshots, screens, ownProcess};
    CaptureCoordinator m_coordinator{{
        .captureService = m_captureService,
        .areaController = std::make_unique<AreaSelectionController>(
            AreaSelectionController::Collaborators{.panels = m_panels,
                                                   .screens = screens,
                                                   .windowList = m_windows,
                                                   .queue = queue,
                                                   .captureService = m_captureService,
                                                   .ownProcessID = ownProcess}),
        .previewController =
            std::make_unique<PreviewWindowController>(PreviewWindowController::Collaborators{.panels = m_panels,
                                                                                             .monitors = m_monitors,
                                                                                             .screens = screens,
                                                                                             .config = config,
                                                                                             .queue = queue,
                                                                                             .views = m_views}),
        .actions = m_actions,
        .screens = screens,
        .defaults = defaults,
        .queue = queue,
        .alerts = m_alerts,
        .workspace = m_workspace,
        .editorWindow = {},
    }};
    MenuBarController m_controller;
};

} // namespace lumenfold::test
