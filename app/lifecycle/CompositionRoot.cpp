#include "app/lifecycle/CompositionRoot.h"

#include "app/actions/ActionHandler.h"
#include "app/configuration/AppConfig.h"
#include "app/lifecycle/AppDelegate.h"
#include "app/lifecycle/ProgramUpdater.h"
#include "app/lifecycle/ScreenRecordingAlert.h"
#include "app/menubar/MenuBarController.h"
#include "app/theme/WindowTheme.h"
#include "app/updates/UpdaterController.h"
#include "capture/CaptureCoordinator.h"
#include "capture/areaselection/AreaSelectionController.h"
#include "cards/CardEditor.h"
#include "cards/CardPersistence.h"
#include "cards/DragFolder.h"
#include "cards/PreviewWindowController.h"
#include "cards/face/ImagePreviewWindowController.h"
#include "cards/face/PreviewViews.h"
#include "editor/StudioModalWindowController.h"
#include "platform/alerts/QtAlerts.h"
#include "platform/appearance/PortalAppearance.h"
#include "platform/autostart/XdgAutostart.h"
#include "platform/defaults/SettingsFileUserDefaults.h"
#include "platform/dragdrop/QtDragSessions.h"
#include "platform/filepanels/PortalOpenPanel.h"
#include "platform/filepanels/QtFilePanels.h"
#include "platform/filepanels/QtOpenPanel.h"
#include "platform/files/XdgFileManager.h"
#include "platform/mainqueue/QtMainQueue.h"
#include "platform/notifications/NotificationCenter.h"
#include "platform/remoteactions/DBusRemoteActions.h"
#include "platform/secrets/KeyringModule.h"
#include "platform/secrets/MirroredSecretStore.h"
#include "platform/session/PlatformServices.h"
#include "platform/statusitem/StatusItem.h"
#include "platform/statusitem/StatusItemSurroundings.h"
#include "platform/workspace/QtWorkspace.h"
#include "service/AuthService.h"
#include "service/HttpLumenfoldService.h"
#include "service/KeychainHelper.h"
#include "service/apikey/ApiKeySetupWindowController.h"
#include "service/http/HttpClient.h"
#include "service/templates/HttpPreviewDownloads.h"
#include "service/templates/TemplateStore.h"
#include "settings/SettingsWindowController.h"
#include "shortcuts/HotkeyManager.h"
#include "shortcuts/ShortcutStore.h"

#include <QDir>
#include <QGuiApplication>

#include <utility>

namespace lumenfold {

namespace {

QString thumbnailFolder(const FileManager &files)
{
    const std::optional<QString> caches = files.cachesDirectory();
    return caches ? QDir(*caches).filePath(CardPersistence::relativeThumbnailPath) : QString();
}

std::optional<PreviewCache> previewCache(const FileManager &files)
{
    const std::optional<QString> caches = files.cachesDirectory();
    return caches ? std::optional(PreviewCache(QDir(*caches).filePath(PreviewCache::relativePath))) : std::nullopt;
}

/// The editor's window as the cards know it.
class EditorOfCards : public CardEditor {
public:
    explicit EditorOfCards(StudioModalWindowController &editor) : m_editor(editor) {}

    void present(const Image &image, const QString &screenshotId, ExportHandler onExport) override
    {
        m_editor.present(image, screenshotId, std::move(onExport));
    }

private:
    StudioModalWindowController &m_editor;
};

/// Drawings that the desktop's panels read.
QString statusIconFolder(const FileManager &files)
{
    const std::optional<QString> caches = files.cachesDirectory();
    return caches ? QDir(*caches).filePath(QStringLiteral("LumenFold/icons")) : QString();
}

} // namespace

/// In the order in which they are built; they go in the opposite order.
struct CompositionRoot::Parts {
    explicit Parts(std::unique_ptr<PlatformServices> services) : platform(std::move(services))
    {
        ShortcutStore::setShared(&shortcuts);
        KeychainHelper::setShared(&keychain);
        AuthService::setShared(&auth);
        ApiKeySetupWindowController::setShared(&apiKeySetup);
        TemplateStore::setShared(&templates);
        SettingsWindowController::setShared(&settingsWindow);
        StudioModalWindowController::setShared(&editor);
    }

    void startUpdater();
    std::unique_ptr<CaptureCoordinator> makeCaptureCoordinator();
    std::unique_ptr<MenuBarController> makeMenuBarController(CaptureCoordinator &coordinator);

    std::unique_ptr<PlatformServices> platform;
    QtMainQueue queue;
    QtWorkspace workspace;
    QtAlerts alerts;
    PortalAppearance appearance;
    XdgFileManager files;
    NotificationCenter notifications;
    SettingsFileUserDefaults defaults{SettingsFileUserDefaults::standardPath()};

    AppConfig config{defaults, platform->screens(), files};
    ActionHandler actions{platform->pasteboard(), config};
    ShortcutStore shortcuts{defaults, notifications};
    HttpClient http;
    MirroredSecretStore secrets{KeychainHelper::service, makeKeyringOfModule};
    KeychainHelper keychain{secrets};
    AuthService auth{{.http = http,
                      .config = config,
                      .keychain = keychain,
                      .defaults = defaults,
                      .notifications = notifications,
                      .queue = queue}};
    ApiKeySetupWindowController apiKeySetup{
        {.auth = auth, .config = config, .appearance = appearance, .workspace = workspace}};
    TemplateStore templates{defaults, notifications};
    HttpLumenfoldService service{
        {.http = http, .auth = auth, .config = config, .workspace = workspace, .templates = templates}};
    HttpPreviewDownloads previewDownloads{http};
    XdgAutostart autostart{XdgAutostart::standardFolders(), XdgAutostart::presentProgram()};
    QtOpenPanel openPanelOfToolkit;
    PortalOpenPanel openPanel{openPanelOfToolkit};
    SettingsWindowController settingsWindow{
        {.view = {.general = {.config = config,
                              .recorder = {.taps = platform->keyEventTaps(),
                                           .store = shortcuts,
                                           .alerts = alerts,
                                           .workspace = workspace},
                              .notifications = notifications,
                              .openPanel = openPanel,
                              .autostart = autostart},
                  .templates = {.picker = {.service = service,
                                           .isSignedIn = [this] { return auth.isSignedIn(); },
                                           .store = templates,
                                           .notifications = notifications,
                                           .apiKeySetup = apiKeySetup},
                                .downloads = previewDownloads,
                                .cache = previewCache(files)},
                  .account = {.auth = auth, .apiKeySetup = apiKeySetup, .appearance = appearance}},
         .workspace = workspace}};
    QtFilePanels filePanels;
    StudioModalWindowController editor{{.config = config,
                                        .auth = auth,
                                        .templates = templates,
                                        .workspace = workspace,
                                        .filePanels = filePanels,
                                        .alerts = alerts}};
    EditorOfCards editorOfCards{editor};
    QtDragSessions dragSessions;
    DragFolder dragFolder;
    PreviewViews cardViews{{
        .panels = platform->panels(),
        .appearance = appearance,
        .screens = platform->screens(),
        .monitors = platform->eventMonitors(),
        .actions = {.actions = actions,
                    .config = config,
                    .queue = queue,
                    .workspace = workspace,
                    .service = &service,
                    .apiKeySetup = &apiKeySetup,
                    .templates = &templates},
        .dragSessions = &dragSessions,
        .dragFolder = &dragFolder,
    }};
    ImagePreviewWindowController fullSizePreview{{
        .panels = platform->panels(),
        .appearance = appearance,
        .screens = platform->screens(),
        .keys = {.taps = platform->keyEventTaps(), .hotKeys = platform->hotKeys(), .queue = queue},
    }};
    CardPersistence cardStore{
        QDir(files.applicationSupportDirectory().value_or(QDir::tempPath())).filePath(CardPersistence::relativePath),
        thumbnailFolder(files)};

    /// Made in its turn of the start-up.
    std::unique_ptr<UpdaterController> updater;
    DBusRemoteActions remoteActions;

    AppDelegate delegate{{
        .workspace = workspace,
        .permissions = platform->permissions(),
        .alerts = alerts,
        .notifications = notifications,
        .shortcuts = shortcuts,
        .auth = auth,
        .apiKeySetup = apiKeySetup,
        .remoteActions = remoteActions,
        .settings = settingsWindow,
        .startUpdater = [this] { startUpdater(); },
        .makeCaptureCoordinator = [this] { return makeCaptureCoordinator(); },
        .makeMenuBarController = [this](CaptureCoordinator &coordinator) { return makeMenuBarController(coordinator); },
        .makeHotkeyManager =
            [this] { return std::make_unique<HotkeyManager>(platform->keyEventTaps(), platform->hotKeys(), queue); },
        .productName = productName(QGuiApplication::applicationDisplayName(), QCoreApplication::applicationName()),
    }};
};

void CompositionRoot::Parts::startUpdater()
{
    updater = std::make_unique<UpdaterController>(notifications, [this](UpdaterDelegate &toTell) {
        return makeProgramUpdater(
            {.http = http, .defaults = defaults, .queue = queue, .workspace = workspace, .appearance = appearance},
            toTell);
    });
    UpdaterController::setShared(updater.get());
}

std::unique_ptr<CaptureCoordinator> CompositionRoot::Parts::makeCaptureCoordinator()
{
    const qint64 ownProcess = QCoreApplication::applicationPid();
    const ScreenCaptureService captureService(platform->screenshots(), platform->screens(), ownProcess);
    return std::make_unique<CaptureCoordinator>(CaptureCoordinator::Collaborators{
        .captureService = captureService,
        .areaController = std::make_unique<AreaSelectionController>(AreaSelectionController::Collaborators{
            .panels = platform->panels(),
            .screens = platform->screens(),
            .windowList = platform->windowList(),
            .queue = queue,
            .captureService = captureService,
            .ownProcessID = ownProcess,
        }),
        .previewController = std::make_unique<PreviewWindowController>(PreviewWindowController::Collaborators{
            .panels = platform->panels(),
            .monitors = platform->eventMonitors(),
            .screens = platform->screens(),
            .config = config,
            .queue = queue,
            .views = cardViews,
            .store = &cardStore,
            .fullSizePreview = &fullSizePreview,
            .editor = &editorOfCards,
        }),
        .actions = actions,
        .screens = platform->screens(),
        .defaults = defaults,
        .queue = queue,
        .alerts = alerts,
        .workspace = workspace,
        .editorWindow = [this] { return &editor; },
    });
}

std::unique_ptr<MenuBarController> CompositionRoot::Parts::makeMenuBarController(CaptureCoordinator &coordinator)
{
    return std::make_unique<MenuBarController>(MenuBarController::Collaborators{
        .statusItem = platform->makeStatusItem(
            {.appearance = appearance,
             .iconFolder = statusIconFolder(files),
             .prepareMenu = [this](QWidget &menu) { WindowTheme::install(menu, appearance); }}),
        .coordinator = coordinator,
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

CompositionRoot::CompositionRoot(std::unique_ptr<PlatformServices> services)
    : m_parts(std::make_unique<Parts>(std::move(services)))
{
}

CompositionRoot::~CompositionRoot()
{
    UpdaterController::setShared(nullptr);
    StudioModalWindowController::setShared(nullptr);
    SettingsWindowController::setShared(nullptr);
    TemplateStore::setShared(nullptr);
    ApiKeySetupWindowController::setShared(nullptr);
    AuthService::setShared(nullptr);
    KeychainHelper::setShared(nullptr);
    ShortcutStore::setShared(nullptr);
}

AppDelegate &CompositionRoot::appDelegate()
{
    return m_parts->delegate;
}

Workspace &CompositionRoot::workspace()
{
    return m_parts->workspace;
}

} // namespace lumenfold
