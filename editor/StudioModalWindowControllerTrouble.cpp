/// What the window says when there is no page in it, and the ways out that it offers.
#include "editor/StudioModalWindowController.h"

#include "app/configuration/AppConfig.h"

#include <QDebug>

namespace lumenfold {

void StudioModalWindowController::failed(ViewTrouble trouble, const QString &reason)
{
    m_timeOut.stop();
    hasLoaded = false;
    qWarning().noquote().nospace() << "LumenFold: the editor's page is not there: " << reason;
    explain(trouble);
}

void StudioModalWindowController::retry()
{
    if (!m_window) {
        return;
    }
    m_window->showWaiting();
    if (m_view) {
        reload();
    }
    if (pendingDataURL.isEmpty() && !m_image.isNull()) {
        present(m_image, m_screenshotId, onExport);
    } else if (!m_view && !m_isLoadingModule) {
        loadModuleAndPage();
    }
}

StudioWindow::Button StudioModalWindowController::browserButton()
{
    return {tr("Always Edit in the Browser"), [this] {
                m_with.config.setEditorLocation(EditorLocation::browser);
                if (m_window) {
                    m_window->close();
                }
            }};
}

void StudioModalWindowController::explain(const EditorModuleTrouble &trouble)
{
    const StudioWindow::Button tryAgain{tr("Try Again"), [this] { retry(); }};
    switch (trouble.kind) {
    case EditorModuleTrouble::Kind::missing:
        m_window->showNotice({tr("The editor is not installed"),
                              tr("The editor needs Qt WebEngine, which is missing on this computer or does not fit "
                                 "LumenFold. Install it (on Debian and Ubuntu, the package libqt6webenginewidgets6), "
                                 "or edit in the browser."),
                              {tryAgain, browserButton()}});
        break;
    case EditorModuleTrouble::Kind::superuser:
        m_window->showNotice({tr("The editor does not open for the superuser"),
                              tr("Web pages are shown behind the walls of a sandbox, which programs of the superuser "
                                 "(root) cannot have. Start LumenFold as an ordinary user, or edit in the browser."),
                              {browserButton()}});
        break;
    case EditorModuleTrouble::Kind::noSandbox:
        m_window->showNotice({tr("The editor cannot be opened safely"),
                              tr("Web pages are shown behind the walls of a sandbox, and this system does not let "
                                 "programs make one (it keeps user namespaces from ordinary programs). Edit in the "
                                 "browser, or ask whoever looks after this computer."),
                              {browserButton()}});
        break;
    }
}

void StudioModalWindowController::explain(ViewTrouble trouble)
{
    const StudioWindow::Button tryAgain{tr("Try Again"), [this] { retry(); }};
    const StudioWindow::Button reloadIt{tr("Reload"), [this] { retry(); }};
    switch (trouble) {
    case ViewTrouble::unreachable:
        m_window->showNotice({tr("The editor cannot be reached"),
                              tr("Check your connection and try again. Your screenshot stays on its card."),
                              {tryAgain}});
        break;
    case ViewTrouble::untrustedServer:
        m_window->showNotice({tr("The editor's server cannot be trusted"),
                              tr("It does not prove that it is the one it claims to be, so nothing was sent to it. "
                                 "Somebody may be listening in this network. Your screenshot stays on its card."),
                              {tryAgain}});
        break;
    case ViewTrouble::ended:
        m_window->showNotice({tr("The editor has stopped working"),
                              tr("Reload it to begin again. Your screenshot stays on its card."),
                              {reloadIt}});
        break;
    }
}

} // namespace lumenfold
