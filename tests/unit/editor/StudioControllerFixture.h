#pragma once

#include "app/configuration/AppConfig.h"
#include "editor/StudioModalWindowController.h"
#include "platform/notifications/NotificationCenter.h"
#include "service/AuthService.h"
#include "service/KeychainHelper.h"
#include "service/http/HttpClient.h"
#include "tests/support/fakes/FakeEditorView.h"
#include "tests/support/fakes/FakeFileManager.h"
#include "tests/support/fakes/FakeFilePanels.h"
#include "tests/support/fakes/FakeMainQueue.h"
#include "tests/support/fakes/FakeScreens.h"
#include "tests/support/fakes/FakeSecretStore.h"
#include "tests/support/fakes/FakeService.h"
#include "tests/support/fakes/FakeUserDefaults.h"
#include "tests/support/fakes/FakeWorkspace.h"

#include <gmock/gmock.h>

#include <atomic>
#include <memory>

namespace lumenfold::test {

/// The controller on the toolkit's platform without a screen, with a page that the test plays.
class StudioControllerTest : public ::testing::Test {
protected:
    StudioControllerTest();
    ~StudioControllerTest() override;

    void makeController(std::chrono::milliseconds patience = std::chrono::seconds{60});
    /// Presents a picture of that size, and returns when its turn has come.
    Image present(int width, const QString &id);
    /// The same, and the page is there but has not said so.
    Image presentAndLoad(int width, const QString &id);
    /// The page says that it is ready.
    void sayLoaded();
    bool exportImage(const QString &text);
    void waitForLoads(int count);
    void closeWindow();
    [[nodiscard]] StudioWindow *window() const { return controller->window(); }
    [[nodiscard]] FakeEditorView &view() const { return *page.view; }
    [[nodiscard]] bool isDelivered(const Image &image, int index) const;
    [[nodiscard]] static Image picture(int width);
    [[nodiscard]] static QString dataURLOf(const Image &image);

    const QString origin = QStringLiteral("https://www.example.org");
    FakeSecretStore store;
    KeychainHelper keychain{store};
    FakeUserDefaults defaults;
    NotificationCenter notifications;
    FakeMainQueue queue;
    FakeScreens screens;
    FakeFileManager files;
    AppConfig config{defaults, screens, files};
    HttpClient http;
    AuthService auth{{.http = http,
                      .config = config,
                      .keychain = keychain,
                      .defaults = defaults,
                      .notifications = notifications,
                      .queue = queue}};
    FakeTemplateSelection templates;
    FakeWorkspace workspace;
    FakeFilePanels panels;
    FakeEditorView::Log page;
    /// What loading the module ends with; a view if nothing.
    std::optional<EditorModuleTrouble> moduleTrouble;
    std::atomic<int> moduleLoads = 0;
    std::vector<Image> exported;
    std::unique_ptr<StudioModalWindowController> controller;
};

} // namespace lumenfold::test
