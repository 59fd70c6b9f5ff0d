#include "editor/module/EditorPage.h"

#include "editor/module/HandOverSender.h"

#include <QPointer>
#include <QTemporaryDir>
#include <QWebEngineCertificateError>
#include <QWebEngineClientCertificateSelection>
#include <QWebEngineDownloadRequest>
#include <QWebEngineFileSystemAccessRequest>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineLoadingInfo>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineProfile>
#include <QWebEngineQuotaRequest>
#include <QWebEngineRegisterProtocolHandlerRequest>
#include <QWebEngineSettings>

#include <array>
#include <memory>
#include <utility>

namespace lumenfold {
namespace {

/// Comes into a folder of our own, because the web engine gives up what is not accepted at once.
class Download : public OfferedFile {
public:
    explicit Download(QWebEngineDownloadRequest *download)
        : m_download(download)
        , m_address(download->url())
        , m_mimeType(download->mimeType())
        , m_suggestedName(download->suggestedFileName())
    {
        m_download->setDownloadDirectory(m_folder.path());
        m_download->setDownloadFileName(name);
        m_download->accept();
        // What the engine tells of it goes with the page; the file stays.
        QObject::connect(download, &QWebEngineDownloadRequest::isFinishedChanged, &m_here,
                         [this] { m_isWhole = outcome().has_value(); });
        // A page that offers something endless must not fill the disk while the user thinks.
        QObject::connect(download, &QWebEngineDownloadRequest::receivedBytesChanged, download, [download] {
            constexpr qint64 most = qint64{1024} * 1024 * 1024;
            if (download->receivedBytes() > most) {
                download->cancel();
            }
        });
    }
    ~Download() override
    {
        if (m_download && !m_download->isFinished()) {
            m_download->cancel();
        }
    }

    [[nodiscard]] QUrl address() const override { return m_address; }
    [[nodiscard]] QString mimeType() const override { return m_mimeType; }
    [[nodiscard]] QString suggestedName() const override { return m_suggestedName; }

    void fetch(std::function<void(tl::expected<QString, QString> path)> done) override
    {
        if (m_isWhole) {
            done(m_folder.filePath(name));
        } else if (m_download && m_download->isFinished()) {
            done(outcome());
        } else if (!m_download) {
            done(tl::unexpected(EditorPage::tr("the page is gone")));
        } else {
            QObject::connect(
                m_download, &QWebEngineDownloadRequest::isFinishedChanged, m_download,
                [this, done = std::move(done)] { done(outcome()); }, Qt::SingleShotConnection);
        }
    }

private:
    [[nodiscard]] tl::expected<QString, QString> outcome() const
    {
        if (m_download->state() != QWebEngineDownloadRequest::DownloadCompleted) {
            return tl::unexpected(m_download->interruptReasonString());
        }
        return m_folder.filePath(name);
    }

    static inline const QString name = QStringLiteral("download");

    QObject m_here;
    QPointer<QWebEngineDownloadRequest> m_download;
    bool m_isWhole = false;
    QTemporaryDir m_folder;
    const QUrl m_address;
    const QString m_mimeType;
    const QString m_suggestedName;
};

} // namespace

EditorPage::EditorPage(QWebEngineProfile *profile, EditorViewClient &client) : QWebEnginePage(profile), m_client(client)
{
    struct Setting {
        QWebEngineSettings::WebAttribute attribute;
        bool isOn;
    };
    static constexpr std::array values{
        Setting{QWebEngineSettings::ErrorPageEnabled, false},
        Setting{QWebEngineSettings::PluginsEnabled, false},
        Setting{QWebEngineSettings::PdfViewerEnabled, false},
        Setting{QWebEngineSettings::FullScreenSupportEnabled, false},
        Setting{QWebEngineSettings::ScreenCaptureEnabled, false},
        Setting{QWebEngineSettings::LocalContentCanAccessRemoteUrls, false},
        Setting{QWebEngineSettings::LocalContentCanAccessFileUrls, false},
        Setting{QWebEngineSettings::JavascriptCanAccessClipboard, false},
        Setting{QWebEngineSettings::JavascriptCanPaste, false},
        Setting{QWebEngineSettings::AllowRunningInsecureContent, false},
        Setting{QWebEngineSettings::AllowGeolocationOnInsecureOrigins, false},
        Setting{QWebEngineSettings::AllowWindowActivationFromJavaScript, false},
        Setting{QWebEngineSettings::HyperlinkAuditingEnabled, false},
        Setting{QWebEngineSettings::DnsPrefetchEnabled, false},
        Setting{QWebEngineSettings::WebRTCPublicInterfacesOnly, true},
        Setting{QWebEngineSettings::PlaybackRequiresUserGesture, true},
        // A file that is dropped beside the place for it must not take the page away.
        Setting{QWebEngineSettings::NavigateOnDropEnabled, false},
    };
    for (const Setting &value : values) {
        settings()->setAttribute(value.attribute, value.isOn);
    }
    settings()->setUnknownUrlSchemePolicy(QWebEngineSettings::DisallowUnknownUrlSchemes);

    refusePermissions();
    reportTroubles();
    connect(profile, &QWebEngineProfile::downloadRequested, this, &EditorPage::offer);
    connect(this, &QWebEnginePage::newWindowRequested, this,
            [this](QWebEngineNewWindowRequest &request) { m_client.newWindowRequested(request.requestedUrl()); });
}

void EditorPage::refusePermissions()
{
    connect(this, &QWebEnginePage::featurePermissionRequested, this, [this](const QUrl &origin, Feature feature) {
        setFeaturePermission(origin, feature, PermissionDeniedByUser);
    });
    connect(this, &QWebEnginePage::fullScreenRequested, this,
            [](QWebEngineFullScreenRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::quotaRequested, this, [](QWebEngineQuotaRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::registerProtocolHandlerRequested, this,
            [](QWebEngineRegisterProtocolHandlerRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::fileSystemAccessRequested, this,
            [](QWebEngineFileSystemAccessRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::selectClientCertificate, this,
            [](QWebEngineClientCertificateSelection selection) { selection.selectNone(); });
    connect(this, &QWebEnginePage::certificateError, this, [this](QWebEngineCertificateError error) {
        error.rejectCertificate();
        m_certificateRefused = true;
    });
}

void EditorPage::reportTroubles()
{
    connect(this, &QWebEnginePage::loadingChanged, this, [this](const QWebEngineLoadingInfo &info) {
        if (info.status() == QWebEngineLoadingInfo::LoadStartedStatus) {
            m_certificateRefused = false;
        }
        // What the server itself says of a page that it does not have is shown as any other page.
        const bool isTrouble = info.status() == QWebEngineLoadingInfo::LoadFailedStatus &&
                               info.errorDomain() != QWebEngineLoadingInfo::HttpStatusCodeDomain;
        constexpr int aborted = -3;
        if (!isTrouble || info.errorCode() == aborted) {
            return;
        }
        const bool isUntrusted =
            m_certificateRefused || info.errorDomain() == QWebEngineLoadingInfo::CertificateErrorDomain;
        m_client.failed(isUntrusted ? ViewTrouble::untrustedServer : ViewTrouble::unreachable, info.errorString());
    });
    connect(this, &QWebEnginePage::renderProcessTerminated, this, [this](RenderProcessTerminationStatus status, int) {
        if (status != NormalTerminationStatus) {
            m_client.failed(ViewTrouble::ended, QStringLiteral("its process has ended"));
        }
    });
}

QWebEnginePage *EditorPage::createWindow(WebWindowType)
{
    return nullptr;
}

QStringList EditorPage::chooseFiles(FileSelectionMode mode, const QStringList &, const QStringList &)
{
    if (mode != FileSelectOpen && mode != FileSelectOpenMultiple) {
        return {};
    }
    return m_client.chooseFiles(mode == FileSelectOpenMultiple);
}

bool EditorPage::acceptNavigationRequest(const QUrl &url, NavigationType, bool)
{
    // Whether it is a link that was clicked, the engine does not say (see courier.js). The program's own resources are
    // nobody's pages.
    return url.scheme() != u"qrc" && url.scheme() != HandOverSender::scheme &&
           m_client.allowsNavigation(url, NavigationKind::other);
}

void EditorPage::javaScriptAlert(const QUrl &, const QString &) {}

bool EditorPage::javaScriptConfirm(const QUrl &, const QString &)
{
    return false;
}

bool EditorPage::javaScriptPrompt(const QUrl &, const QString &, const QString &, QString *)
{
    return false;
}

void EditorPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &, int, const QString &) {}

void EditorPage::offer(QWebEngineDownloadRequest *download)
{
    // A data address that is short enough comes whole.
    constexpr qsizetype whole = 1024 * 1024;
    const QUrl address = download->url();
    if (address.scheme() == u"data" && address.toEncoded().size() < whole && address.toEncoded().contains(',')) {
        download->cancel();
        (void)m_client.allowsNavigation(address, NavigationKind::other);
        return;
    }
    m_client.fileOffered(std::make_unique<Download>(download));
}

} // namespace lumenfold
