#pragma once

#include "editor/StudioModalWindowController.h"
#include "tests/support/desktop/GuiTest.h"
#include "tests/support/desktop/Input.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/FakeAccount.h"
#include "tests/support/fakes/FakeAlerts.h"
#include "tests/support/fakes/FakeFilePanels.h"
#include "tests/support/fakes/FakeService.h"
#include "tests/support/fakes/FakeWorkspace.h"
#include "tests/support/service/ServiceDouble.h"
#include "tests/support/unit/LogWatch.h"

#include <QTemporaryDir>
#include <QUrlQuery>

#include <gmock/gmock.h>

#include <memory>

namespace lumenfold::test {

/// The editor's window with the real module. What happens in a page is seen as people's servers see it: a page of a
/// test calls `report(text)`, which asks the double for "/report?…".
class EditorDesk : public ::testing::Test, protected FakeAccount {
protected:
    EditorDesk();
    ~EditorDesk() override;

    static constexpr std::chrono::seconds patience{120};

    /// From now on the editor's page is one with this script. In it, `elsewhere` is another origin.
    void serve(const QByteArray &script);
    /// A page of that origin.
    void serveElsewhere(const QByteArray &path, const QByteArray &script);
    [[nodiscard]] static QImage noise(QSize size);
    /// Presents a picture.
    void present(const QImage &picture, const QString &id = QStringLiteral("1"));
    /// Presents one to the double's own editor, and returns when the page shows it.
    void presentAndWait(const QImage &picture, const QString &id = QStringLiteral("1"));
    /// What the pages have reported, oldest first.
    [[nodiscard]] QStringList reports() const;
    void waitForReport(const QString &text);
    /// What the double's own editor has told of itself, "shown" or "opened".
    [[nodiscard]] QList<QUrlQuery> told(const QByteArray &what) const;
    /// Strikes a key in the page.
    void strike(std::string_view keys);
    void waitForExports(std::size_t count);
    void closeWindow();
    void waitForNotice(const QString &title);
    void press(const QString &button);
    [[nodiscard]] StudioWindow *window() const { return controller->window(); }
    /// Processes with pages in them.
    [[nodiscard]] static QList<pid_t> renderers() { return processes("renderer"); }
    /// Of the engine's, by what they are for.
    [[nodiscard]] static QList<pid_t> processes(QByteArrayView type);

    QTemporaryDir folder;
    std::unique_ptr<ServiceDouble> service = std::make_unique<ServiceDouble>();
    ServiceDouble otherService;
    FakeTemplateSelection templates;
    FakeWorkspace workspace;
    FakeFilePanels panels;
    FakeAlerts alerts;
    std::vector<Image> exported;
    std::unique_ptr<StudioModalWindowController> controller;

private:
    Keyboard m_keyboard{guiTestServer().display()};
};

} // namespace lumenfold::test
