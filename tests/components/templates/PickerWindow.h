#pragma once

#include "platform/notifications/NotificationCenter.h"
#include "service/http/HttpClient.h"
#include "service/templates/HttpPreviewDownloads.h"
#include "service/templates/TemplateGrid.h"
#include "service/templates/TemplatePickerView.h"
#include "service/templates/TemplatePreviews.h"
#include "service/templates/TemplateStore.h"
#include "tests/support/desktop/GuiTest.h"
#include "tests/support/desktop/Input.h"
#include "tests/support/fakes/FakeAppearance.h"
#include "tests/support/fakes/FakeService.h"
#include "tests/support/fakes/FakeUserDefaults.h"
#include "tests/support/service/ServiceDouble.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace lumenfold::test {

/// The picker in a window as large as the settings window leaves it, with the keyboard. Its list is the test's; its
/// pictures come over HTTP.
class PickerWindowTest : public ::testing::Test {
protected:
    using Endpoint = ServiceDouble::Endpoint;

    PickerWindowTest();
    ~PickerWindowTest() override;

    /// So many templates, the newest first: "Template 1", "Template 2" and so on.
    void setTemplates(int count);
    /// Shows the window and returns when it has the keyboard; a fetch is under way then.
    void open();
    /// The same, and the templates are there.
    void openLoaded();

    [[nodiscard]] TemplateGrid &grid() const { return *picker->findChild<TemplateGrid *>(); }
    [[nodiscard]] QLineEdit &search() const { return *picker->findChild<QLineEdit *>(); }
    [[nodiscard]] TemplatePreviews &previews() const { return *picker->findChild<TemplatePreviews *>(); }
    /// The button with that text, if it is seen.
    [[nodiscard]] QPushButton *button(const QString &text) const;
    /// A text that is seen.
    [[nodiscard]] bool isShown(const QString &text) const;
    [[nodiscard]] QStringList shownNames() const;
    /// The middle of a cell, in root pixels.
    [[nodiscard]] QPoint cellOnScreen(int row) const;
    [[nodiscard]] QPoint onScreen(const QWidget &widget, QPoint place) const;

    FakeLumenfoldService service;
    /// Where the list comes from.
    LumenfoldService *listedBy = &service;
    FakeApiKeySetupWindow apiKeySetup;
    FakeUserDefaults defaults;
    NotificationCenter notifications;
    TemplateStore store{defaults, notifications};
    FakeAppearance appearance;
    ServiceDouble server;
    HttpClient client;
    HttpPreviewDownloads downloads{client};
    QTemporaryDir cacheFolder;
    bool isSignedIn = true;
    Keyboard keyboard{guiTestServer().display()};
    Pointer pointer{guiTestServer().display()};
    std::unique_ptr<QWidget> window;
    TemplatePickerView *picker = nullptr;
};

} // namespace lumenfold::test
