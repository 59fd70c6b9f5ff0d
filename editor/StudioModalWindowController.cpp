#include "editor/StudioModalWindowController.h"

#include "app/configuration/AppConfig.h"
#include "editor/bridge/BridgeScripts.h"
#include "editor/bridge/DataUrl.h"
#include "editor/bridge/EditedPicture.h"
#include "editor/bridge/EditorOrigin.h"
#include "editor/bridge/HandOver.h"
#include "platform/alerts/Alerts.h"
#include "platform/image/EncodingPool.h"
#include "platform/workspace/Workspace.h"
#include "service/AuthService.h"
#include "service/TemplateSelection.h"
#include "service/http/TransportError.h"

#include <QApplication>
#include <QCoroTimer>
#include <QDebug>
#include <QThreadPool>
#include <QWindow>

#include <utility>

namespace lumenfold {
namespace {

StudioModalWindowController *sharedController = nullptr;

/// A page that posts and posts fills nobody's log.
constexpr int loggedIgnoredMessages = 20;

/// Long enough for the event loop to come to rest.
constexpr std::chrono::milliseconds restBetweenSteps{2};

std::optional<QByteArray> encoded(const Image &image)
{
    const std::optional<QByteArray> png = image.pngData();
    return png ? std::optional(pngDataURL(*png)) : std::nullopt;
}

/// Nothing if there is nothing to say of it.
std::optional<Image> readPicture(QByteArrayList dataURL)
{
    const auto bytes = readExport(std::exchange(dataURL, {}).join());
    if (!bytes) {
        return bytes.error() == ExportTrouble::noComma ? std::nullopt : std::optional(Image());
    }
    return readEditedPicture(*bytes);
}

} // namespace

StudioModalWindowController::StudioModalWindowController(const Collaborators &collaborators)
    : m_with(collaborators)
    , m_requests({.config = m_with.config, .workspace = m_with.workspace, .filePanels = m_with.filePanels})
{
    m_timeOut.setSingleShot(true);
    m_afterClosing.setSingleShot(true);
    m_afterClosing.callOnTimeout(this, [this] {
        if (!m_view) {
            backgroundPool().start(&giveEngineBack);
        }
    });
    m_timeOut.callOnTimeout(this, [this] {
        m_view->stop();
        failed(ViewTrouble::unreachable, QStringLiteral("no answer in time"));
    });
}

StudioModalWindowController::~StudioModalWindowController()
{
    // The view goes before the window that it is in.
    m_view.reset();
}

StudioModalWindowController &StudioModalWindowController::shared()
{
    Q_ASSERT_X(sharedController, "StudioModalWindowController::shared", "called before the composition root made it");
    return *sharedController;
}

void StudioModalWindowController::setShared(StudioModalWindowController *controller)
{
    sharedController = controller;
}

void StudioModalWindowController::present(const Image &image, const QString &screenshotId, ExportHandler handler)
{
    encodeAndShow(image, screenshotId, std::move(handler));
}

QCoro::Task<> StudioModalWindowController::encodeAndShow(Image image, QString id, ExportHandler handler)
{
    const quint64 number = ++m_asked;
    const std::function<std::optional<QByteArray>()> work = [image] { return encoded(image); };
    std::optional<QByteArray> dataURL;
    try {
        dataURL = co_await m_work.run<std::optional<QByteArray>>(work);
    } catch (const TransportError &) {
        co_return;
    }
    if (!dataURL) {
        qWarning("LumenFold: could not encode screenshot for the in-app editor.");
        co_return;
    }
    if (number < m_shown) {
        // A later one was quicker.
        co_return;
    }
    m_shown = number;
    pendingDataURL = *std::move(dataURL);
    pendingScreenshotId = id;
    onExport = std::move(handler);
    m_image = image;
    m_screenshotId = id;

    if (m_view && hasLoaded) {
        deliverImage();
    }
    if (!m_window) {
        makeWindow();
    } else if (m_view && m_window->showsNotice()) {
        m_window->showWaiting();
        reload();
    }
    bringForward();
    if (!m_view && !m_isLoadingModule) {
        loadModuleAndPage();
    }
}

void StudioModalWindowController::makeWindow()
{
    m_window = std::make_unique<StudioWindow>();
    m_requests.setWindow(m_window.get());
    connect(m_window.get(), &StudioWindow::closing, this, &StudioModalWindowController::windowWillClose);
    connect(m_window.get(), &StudioWindow::inputReceived, &m_requests, &PageRequests::noteInput);
}

QCoro::Task<> StudioModalWindowController::loadModuleAndPage()
{
    using Loaded = tl::expected<EditorModule, EditorModuleTrouble>;
    const QPointer self(this);
    const QPointer window(m_window.get());
    m_isLoadingModule = true;
    m_window->showWaiting();
    const std::function<Loaded()> work = m_with.loadModule;
    Loaded loaded;
    try {
        loaded = co_await m_work.run<Loaded>(work);
    } catch (const TransportError &) {
        co_return;
    }
    if (loaded && window) {
        // Each takes its time of the main thread, and what the user does meanwhile has its turn in between.
        loaded->startEngine();
        co_await QCoro::sleepFor(restBetweenSteps);
        if (!self) {
            co_return;
        }
    }
    m_isLoadingModule = false;
    if (!window) {
        // It was closed; one that was opened meanwhile waits for this.
        if (m_window) {
            loadModuleAndPage();
        }
        co_return;
    }
    if (!loaded) {
        qWarning().noquote().nospace() << "LumenFold: the editor cannot be opened: " << loaded.error().reason;
        explain(loaded.error());
        co_return;
    }
    makeView(loaded->makeView);
    reload();
}

void StudioModalWindowController::makeView(const MakeEditorView &make)
{
    m_view = make(
        {
            .bridgeScript = bridgeScript(editorOrigin(m_with.config.editorBaseURL())),
            .loadingBackgroundScript = loadingBackgroundScript(),
            .messageNames = {loadedMessageName.toString(), imageMessageName.toString()},
            .background = StudioWindow::loadingBackground,
        },
        *this, m_window->stage());
}

QCoro::Task<> StudioModalWindowController::reload()
{
    const QPointer self(this);
    const QPointer window(m_window.get());
    const std::optional<QString> key = co_await m_with.auth.requestApiKey();
    if (!self || !window || !m_view) {
        co_return;
    }
    hasLoaded = false;
    m_timeOut.start(m_with.patience);
    m_view->load(m_with.config.embeddedEditorURL(key));
}

void StudioModalWindowController::bringForward()
{
    if (m_with.workspace.activationPolicy() != ActivationPolicy::regular) {
        m_with.workspace.setActivationPolicy(ActivationPolicy::regular);
    }
    m_isHiddenForCapture = false;
    m_hasToldOfLostExport = false;
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    if (QGuiApplication::focusWindow() == m_window->windowHandle() && !m_window->isActiveWindow()) {
        // Hidden and shown again before the toolkit believed that it lost the focus (it waits some tenths of a second),
        // the window has the focus and would not know.
        QApplication::setActiveWindow(m_window.get());
    }
    m_with.workspace.activateIgnoringOtherApps();
    m_window->activateWindow();
}

bool StudioModalWindowController::hideForCapture()
{
    if (!m_window || !m_window->isVisible() || m_window->isMinimized()) {
        return false;
    }
    m_isHiddenForCapture = true;
    m_window->hide();
    return true;
}

void StudioModalWindowController::restoreAfterCapture()
{
    if (m_window) {
        bringForward();
    }
}

void StudioModalWindowController::windowWillClose()
{
    if (m_requests.isChoosing()) {
        // The page's call waits for the panel, and must find its way back before the page goes.
        m_closesAfterChoosing = true;
        m_requests.cancelChoosing();
        return;
    }
    if (!m_window) {
        return;
    }
    m_timeOut.stop();
    m_requests.setWindow(nullptr);
    if (m_view) {
        m_view->stop();
        m_view.reset();
        // When the engine has put away what the page left.
        m_afterClosing.start(std::chrono::seconds{2});
    }
    // It is telling that it closes.
    m_window.release()->deleteLater();
    pendingDataURL.clear();
    pendingScreenshotId.clear();
    onExport = nullptr;
    hasLoaded = false;
    m_image = {};
    m_screenshotId.clear();
    m_isHiddenForCapture = false;
    m_with.workspace.setActivationPolicy(ActivationPolicy::accessory);
}

void StudioModalWindowController::deliverImage()
{
    if (!m_view || pendingDataURL.isEmpty()) {
        return;
    }
    const auto isWanted = [this] { return isTrustedAddress(m_view->address(), m_with.config.editorBaseURL()); };
    if (!isWanted()) {
        qWarning("LumenFold: editor window is not on the trusted origin; withholding screenshot.");
        return;
    }
    const QByteArray members = handOverMembers({.screenshotId = pendingScreenshotId,
                                                .apiKey = m_with.auth.apiKey(),
                                                .templateId = m_with.templates.selectedId()});
    m_view->handOver(members, std::exchange(pendingDataURL, {}), editorOrigin(m_with.config.editorBaseURL()), isWanted,
                     [](const QString &trouble) {
                         if (!trouble.isEmpty()) {
                             qWarning().noquote().nospace() << "LumenFold: failed to hand image to editor: " << trouble;
                         }
                     });
    pendingScreenshotId.clear();
}

void StudioModalWindowController::documentCreated()
{
    hasLoaded = false;
    m_ignoredMessages = 0;
    m_timeOut.stop();
    m_window->showPage(m_view->widget());
}

bool StudioModalWindowController::messageReceived(const QJsonObject &json)
{
    const std::optional<PageMessage> message = readPageMessage(json);
    if (!message) {
        return false;
    }
    if (!isTrusted(*message)) {
        noteIgnoredMessage();
        return false;
    }
    if (message->name == loadedMessageName) {
        hasLoaded = true;
        deliverImage();
    } else if (message->name == imageMessageName && message->isText) {
        if (message->text) {
            takeExport({message->text->toUtf8()});
        } else if (takesExports()) {
            fetchExport(*message);
            return true;
        }
    }
    return false;
}

void StudioModalWindowController::fetchExport(const PageMessage &message)
{
    m_view->fetchText(
        {.document = message.document, .message = message.number, .length = message.length},
        [this, message] { return isTrusted(message); },
        [this](std::optional<QByteArrayList> parts) {
            if (parts) {
                takeExport(*std::move(parts));
            } else {
                tellThatExportIsLost();
            }
        });
}

/// In front of the page, which still has what the user did in it.
QCoro::Task<> StudioModalWindowController::tellThatExportIsLost()
{
    // A page can begin exports and leave in a loop. One whose process has ended is told of by the window.
    if (!takesExports() || m_window->showsNotice() || std::exchange(m_hasToldOfLostExport, true)) {
        co_return;
    }
    qWarning("LumenFold: could not fetch the exported image from the editor.");
    Alert alert;
    alert.messageText = tr("The edited picture did not arrive");
    alert.informativeText = tr("The editor was left before it had handed the picture over. Export it once more; until "
                               "then your screenshot stays as it is.");
    alert.buttons.append(tr("OK"));
    co_await m_with.alerts.runModal(alert);
}

bool StudioModalWindowController::isTrusted(const PageMessage &message) const
{
    const QUrl base = m_with.config.editorBaseURL();
    // What the engine said of the document when the message was posted, and what it says of the page now.
    return isTrustedOrigin(readSecurityOrigin(message.origin), base) && isTrustedAddress(m_view->address(), base);
}

void StudioModalWindowController::noteIgnoredMessage()
{
    if (++m_ignoredMessages <= loggedIgnoredMessages) {
        qWarning("LumenFold: ignored editor message from an untrusted frame or origin.");
    }
}

bool StudioModalWindowController::takesExports() const
{
    // A page that exports in a loop makes one card for each time that the user opened it, and not more.
    return m_window && (m_window->isVisible() || m_isHiddenForCapture);
}

QCoro::Task<> StudioModalWindowController::takeExport(QByteArrayList dataURL)
{
    if (!takesExports()) {
        co_return;
    }
    if (m_isTakingExport) {
        m_nextExport = std::move(dataURL);
        co_return;
    }
    const QPointer window(m_window.get());
    const ExportHandler handler = onExport;
    // The pool has them alone, and gives their memory back.
    const auto parts = std::make_shared<QByteArrayList>(std::move(dataURL));
    const std::function<std::optional<Image>()> work = [parts] { return readPicture(std::exchange(*parts, {})); };
    m_isTakingExport = true;
    std::optional<Image> picture;
    try {
        picture = co_await m_work.run<std::optional<Image>>(work);
    } catch (const TransportError &) {
        co_return;
    }
    m_isTakingExport = false;
    std::optional<QByteArrayList> next = std::exchange(m_nextExport, std::nullopt);
    if (!picture || picture->isNull()) {
        if (picture) {
            qWarning("LumenFold: could not decode exported image from the editor.");
        }
        if (next) {
            takeExport(*std::move(next));
        }
        co_return;
    }
    // A window that was closed meanwhile had been told what to do with it.
    if (window) {
        m_isHiddenForCapture = false;
        window->hide();
        m_with.workspace.setActivationPolicy(ActivationPolicy::accessory);
    }
    if (handler) {
        handler(*picture);
    }
}

bool StudioModalWindowController::allowsNavigation(const QUrl &address, NavigationKind kind)
{
    return m_requests.allowsNavigation(address, kind);
}

void StudioModalWindowController::newWindowRequested(const QUrl &address)
{
    m_requests.openWindow(address);
}

void StudioModalWindowController::fileOffered(std::unique_ptr<OfferedFile> file)
{
    m_requests.saveFile(std::move(file));
}

QStringList StudioModalWindowController::chooseFiles(bool several)
{
    const QPointer self(this);
    QStringList chosen = m_requests.chooseFiles(several);
    if (self && std::exchange(m_closesAfterChoosing, false)) {
        QMetaObject::invokeMethod(this, &StudioModalWindowController::windowWillClose, Qt::QueuedConnection);
    }
    return chosen;
}

} // namespace lumenfold
