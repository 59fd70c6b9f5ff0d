#pragma once

#include "editor/EditorModule.h"
#include "editor/EditorView.h"
#include "editor/EditorWindow.h"
#include "editor/PageRequests.h"
#include "editor/StudioWindow.h"
#include "editor/bridge/PageMessages.h"
#include "platform/image/Image.h"
#include "service/BackgroundWork.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace lumenfold {

class Alerts;
class AppConfig;
class AuthService;
class TemplateSelection;

/// The one window with the online service's editor: hands it the screenshot that is edited and takes the edited picture
/// back. It talks with the page through two messages and trusts nothing but the main frame of a document of the
/// editor's own origin. Main thread.
class StudioModalWindowController : public QObject, public EditorWindow, private EditorViewClient {
    Q_OBJECT

public:
    using ExportHandler = std::function<void(const Image &edited)>;
    using LoadModule = std::function<tl::expected<EditorModule, EditorModuleTrouble>()>;

    /// Everything must outlive the controller.
    struct Collaborators {
        AppConfig &config;
        AuthService &auth;
        const TemplateSelection &templates;
        Workspace &workspace;
        FilePanels &filePanels;
        Alerts &alerts;
        /// Called on a thread of the pool, for each window.
        LoadModule loadModule = &loadEditorModule;
        /// How long the page may take until its document is there.
        std::chrono::milliseconds patience = std::chrono::seconds{60};
    };

    explicit StudioModalWindowController(const Collaborators &collaborators);
    ~StudioModalWindowController() override;

    /// The one of the program, which the composition root made and named with `setShared`.
    [[nodiscard]] static StudioModalWindowController &shared();
    /// Not owned; null when it goes away.
    static void setShared(StudioModalWindowController *controller);

    /// Opens the window with the picture, or has the open page take it; returns at once. `onExport` gets the edited
    /// picture, at most once for each time that the window is shown. A picture that cannot be encoded opens nothing.
    void present(const Image &image, const QString &screenshotId, ExportHandler onExport);

    bool hideForCapture() override;
    void restoreAfterCapture() override;

    /// Null while there is none.
    [[nodiscard]] StudioWindow *window() const { return m_window.get(); }

private:
    QCoro::Task<> encodeAndShow(Image image, QString id, ExportHandler handler);
    void makeWindow();
    QCoro::Task<> loadModuleAndPage();
    void makeView(const MakeEditorView &make);
    /// Loads the page. Asks the keyring for the key first, which may ask the user.
    QCoro::Task<> reload();
    void bringForward();
    void windowWillClose();

    void deliverImage();
    void fetchExport(const PageMessage &message);
    /// The data address in parts.
    QCoro::Task<> takeExport(QByteArrayList dataURL);
    [[nodiscard]] bool takesExports() const;
    QCoro::Task<> tellThatExportIsLost();

    void documentCreated() override;
    [[nodiscard]] bool messageReceived(const QJsonObject &json) override;
    [[nodiscard]] bool allowsNavigation(const QUrl &address, NavigationKind kind) override;
    void newWindowRequested(const QUrl &address) override;
    void fileOffered(std::unique_ptr<OfferedFile> file) override;
    [[nodiscard]] QStringList chooseFiles(bool several) override;
    void failed(ViewTrouble trouble, const QString &reason) override;

    [[nodiscard]] bool isTrusted(const PageMessage &message) const;
    void noteIgnoredMessage();
    void explain(const EditorModuleTrouble &trouble);
    void explain(ViewTrouble trouble);
    [[nodiscard]] StudioWindow::Button browserButton();
    /// Once more from the beginning, with the picture that the window was opened for.
    void retry();

    const Collaborators m_with;
    PageRequests m_requests;
    std::unique_ptr<StudioWindow> m_window;
    std::unique_ptr<EditorView> m_view;
    /// The screenshot as "data:image/png;base64,…" and its name, as long as the page has not got them.
    QByteArray pendingDataURL;
    QString pendingScreenshotId;
    ExportHandler onExport;
    /// The page has said that it is there.
    bool hasLoaded = false;

    /// Counts the calls of present().
    quint64 m_asked = 0;
    /// The latest that had its picture encoded.
    quint64 m_shown = 0;
    /// What the page was opened with, for a page that has to begin once more.
    Image m_image;
    QString m_screenshotId;
    bool m_isLoadingModule = false;
    bool m_isHiddenForCapture = false;
    bool m_isTakingExport = false;
    /// The latest that came meanwhile, for when that one is no picture.
    std::optional<QByteArrayList> m_nextExport;
    /// Since the window was shown last.
    bool m_hasToldOfLostExport = false;
    bool m_closesAfterChoosing = false;
    /// Of the present document.
    int m_ignoredMessages = 0;
    QTimer m_timeOut;
    QTimer m_afterClosing;
    BackgroundWork m_work;
};

} // namespace lumenfold
