#include "tests/gallery/EditorScenes.h"

#include "editor/StudioModalWindowController.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/fakes/FakeAccount.h"
#include "tests/support/fakes/FakeAlerts.h"
#include "tests/support/fakes/FakeEditorView.h"
#include "tests/support/fakes/FakeFilePanels.h"
#include "tests/support/fakes/FakeService.h"
#include "tests/support/fakes/FakeWorkspace.h"

#include <utility>
#include <variant>

namespace lumenfold::test {
namespace {

/// What is wrong: with the module, with the page, or nothing yet.
using Trouble = std::variant<std::monostate, EditorModuleTrouble::Kind, ViewTrouble>;

class Painter : private FakeAccount {
public:
    explicit Painter(const Trouble &trouble) : m_trouble(trouble)
    {
        defaults.setRaw(AppConfig::editorBaseOverrideKey, QStringLiteral("https://www.example.org"));
    }

    [[nodiscard]] QImage paint()
    {
        QImage picture(4, 3, QImage::Format_RGB32);
        picture.fill(Qt::white);
        m_controller.present(Image::fromPixels(picture), QStringLiteral("1"), {});
        waitUntil("the window", [this] { return m_controller.window() != nullptr; });
        if (const auto *const trouble = std::get_if<ViewTrouble>(&m_trouble)) {
            waitUntil("the page", [this] { return !m_page.loads.isEmpty(); });
            m_page.view->client().failed(*trouble, QStringLiteral("for the picture"));
        } else if (std::holds_alternative<EditorModuleTrouble::Kind>(m_trouble)) {
            waitUntil("the notice", [this] { return m_controller.window()->showsNotice(); });
        }
        // The layout follows in its own time.
        (void)staysTrue([] { return true; }, std::chrono::milliseconds(60));
        return m_controller.window()->grab().toImage();
    }

private:
    const Trouble m_trouble;
    FakeTemplateSelection m_templates;
    FakeWorkspace m_workspace;
    FakeFilePanels m_panels;
    FakeAlerts m_alerts;
    FakeEditorView::Log m_page;
    StudioModalWindowController m_controller{
        {.config = config,
         .auth = auth,
         .templates = m_templates,
         .workspace = m_workspace,
         .filePanels = m_panels,
         .alerts = m_alerts,
         .loadModule = [this]() -> tl::expected<EditorModule, EditorModuleTrouble> {
             if (const auto *const kind = std::get_if<EditorModuleTrouble::Kind>(&m_trouble)) {
                 return tl::unexpected(EditorModuleTrouble{*kind, QStringLiteral("for the picture")});
             }
             return m_page.module();
         }}};
};

} // namespace

std::vector<Scene> editorScenes()
{
    const std::vector<std::pair<QString, Trouble>> states{
        {QStringLiteral("waiting"), {}},
        {QStringLiteral("unreachable"), ViewTrouble::unreachable},
        {QStringLiteral("untrusted-server"), ViewTrouble::untrustedServer},
        {QStringLiteral("ended"), ViewTrouble::ended},
        {QStringLiteral("not-installed"), EditorModuleTrouble::Kind::missing},
        {QStringLiteral("superuser"), EditorModuleTrouble::Kind::superuser},
        {QStringLiteral("no-sandbox"), EditorModuleTrouble::Kind::noSandbox},
    };
    std::vector<Scene> scenes;
    // The window is dark on every desktop, like the page.
    for (const auto &[name, trouble] : states) {
        scenes.push_back(
            {QStringLiteral("editor-%1").arg(name), [trouble = trouble] { return Painter(trouble).paint(); }});
    }
    return scenes;
}

} // namespace lumenfold::test
