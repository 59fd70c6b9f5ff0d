#pragma once

#include "editor/StudioModalWindowController.h"
#include "tests/support/fakes/FakeAccount.h"
#include "tests/support/fakes/FakeAlerts.h"
#include "tests/support/fakes/FakeEditorView.h"
#include "tests/support/fakes/FakeFilePanels.h"
#include "tests/support/fakes/FakeService.h"
#include "tests/support/fakes/FakeWorkspace.h"

#include <gmock/gmock.h>

#include <atomic>
#include <memory>

namespace lumenfold::test {

/// The controller on the toolkit's platform without a screen, with a page that the test plays.
class StudioControllerTest : public ::testing::Test, protected FakeAccount {
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
    void exportImage(const QString &text);
    void waitForLoads(int count);
    void closeWindow();
    [[nodiscard]] StudioWindow *window() const { return controller->window(); }
    [[nodiscard]] FakeEditorView &view() const { return *page.view; }
    [[nodiscard]] bool isDelivered(const Image &image, int index) const;
    [[nodiscard]] static Image picture(int width);
    [[nodiscard]] static QString dataURLOf(const Image &image);

    const QString origin = QStringLiteral("https://www.example.org");
    FakeTemplateSelection templates;
    FakeWorkspace workspace;
    FakeFilePanels panels;
    FakeAlerts alerts;
    FakeEditorView::Log page;
    /// What loading the module ends with; a view if nothing.
    std::optional<EditorModuleTrouble> moduleTrouble;
    std::atomic<int> moduleLoads = 0;
    std::vector<Image> exported;
    std::unique_ptr<StudioModalWindowController> controller;
};

} // namespace lumenfold::test
