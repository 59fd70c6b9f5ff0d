#pragma once

#include "app/actions/ActionHandler.h"
#include "app/configuration/AppConfig.h"
#include "app/menubar/MenuBarController.h"
#include "app/updates/UpdaterController.h"
#include "capture/CaptureCoordinator.h"
#include "capture/areaselection/AreaSelectionController.h"
#include "cards/PreviewWindowController.h"
#include "platform/notifications/NotificationCenter.h"
#include "service/AuthService.h"
#include "service/KeychainHelper.h"
#include "service/http/HttpClient.h"
#include "shortcuts/ShortcutStore.h"
#include "tests/support/fakes/FakeAlerts.h"
#include "tests/support/fakes/FakeCardViews.h"
#include "tests/support/fakes/FakeEventMonitors.h"
#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakeMainQueue.h"
#include "tests/support/fakes/FakePanel.h"
#include "tests/support/fakes/FakePasteboard.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeScreenshotManager.h"
#include "tests/support/fakes/FakeSecretStore.h"
#include "tests/support/fakes/FakeService.h"
#include "tests/support/fakes/FakeSettingsWindow.h"
#include "tests/support/fakes/FakeUpdater.h"
#include "tests/support/fakes/FakeUserDefaults.h"
#include "tests/support/fakes/FakeWindowList.h"
#include "tests/support/fakes/FakeWorkspace.h"

#include <memory>
#include <utility>

namespace lumenfold::test {

/// The program's menu with all that it stands on, for programs that look at it or measure it.
class MenuStage {
public:
    explicit MenuStage(std::unique_ptr<StatusItem> statusItem)
        : m_controller({.statusItem = std::move(statusItem),
                        .coordinator = m_coordinator,
                        .auth = m_auth,
                        .shortcuts = m_shortcuts,
                        .updater = m_updater,
                        .notifications = m_notifications,
                        .queue = m_queue,
                        .workspace = m_workspace,
                        .apiKeySetup = m_apiKeySetup,
                        .settings = m_settings})
    {
    }

    void connectAs(const QString &email)
    {
        m_defaults.setRaw(AuthService::emailDefaultsKey, email);
        m_secrets.putFromOutside({.service = KeychainHelper::service, .account = AuthService::keychainKey}, "key");
        m_queue.runPosted();
    }

    void findUpdate()
    {
        m_updater.setHasAvailableUpdate(true);
        m_queue.runPosted();
    }

    void rebuild()
    {
        m_notifications.post(ShortcutStore::changedNotification);
        m_queue.runPosted();
    }

private:
    static constexpr qint64 ownProcess = 100;

    FakeMainQueue m_queue;
    FakeScreens m_screens;
    FakeUserDefaults m_defaults;
    FakeFileManager m_files;
    AppConfig m_config{m_defaults, m_screens, m_files};
    FakePasteboard m_pasteboard;
    ActionHandler m_actions{m_pasteboard, m_config};
    FakePanelFactory m_panels{m_queue};
    FakeEventMonitors m_monitors;
    FakeCardViews m_views;
    FakeWindowList m_windows;
    FakeScreenshotManager m_screenshots;
    FakeAlerts m_alerts;
    FakeWorkspace m_workspace;
    NotificationCenter m_notifications;
    ShortcutStore m_shortcuts{m_defaults, m_notifications};
    FakeSecretStore m_secrets;
    KeychainHelper m_keychain{m_secrets};
    HttpClient m_http;
    AuthService m_auth{{.http = m_http,
                        .config = m_config,
                        .keychain = m_keychain,
                        .defaults = m_defaults,
                        .notifications = m_notifications,
                        .queue = m_queue}};
    UpdaterController m_updater{m_notifications,
                                [](UpdaterDelegate &delegate) { return std::make_unique<FakeUpdater>(delegate); }};
    FakeApiKeySetupWindow m_apiKeySetup;
    FakeSettingsWindow m_settings;
    ScreenCaptureService m_captureService{m_screenshots, m_screens, ownProcess};
    CaptureCoordinator m_coordinator{{
        .captureService = m_captureService,
        .areaController = std::make_unique<AreaSelectionController>(
            AreaSelectionController::Collaborators{.panels = m_panels,
                                                   .screens = m_screens,
                                                   .windowList = m_windows,
                                                   .queue = m_queue,
                                                   .captureService = m_captureService,
                                                   .ownProcessID = ownProcess}),
        .previewController =
            std::make_unique<PreviewWindowController>(PreviewWindowController::Collaborators{.panels = m_panels,
                                                                                             .monitors = m_monitors,
                                                                                             .screens = m_screens,
                                                                                             .config = m_config,
                                                                                             .queue = m_queue,
                                                                                             .views = m_views}),
        .actions = m_actions,
        .screens = m_screens,
        .defaults = m_defaults,
        .queue = m_queue,
        .alerts = m_alerts,
        .workspace = m_workspace,
        .editorWindow = {},
    }};
    MenuBarController m_controller;
};

} // namespace lumenfold::test
