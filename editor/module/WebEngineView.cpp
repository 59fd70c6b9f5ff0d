#include "editor/module/WebEngineView.h"

#include "editor/module/EditorPage.h"
#include "editor/module/HandOverSender.h"
#include "editor/module/PageListener.h"
#include "editor/module/TextFetcher.h"

#include <QFile>
#include <QUuid>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineView>

namespace lumenfold {
namespace {

QString sourceOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void add(QWebEnginePage &page, const QString &name, const QString &source, QWebEngineScript::ScriptWorldId world)
{
    QWebEngineScript script;
    script.setName(name);
    script.setSourceCode(source);
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(world);
    script.setRunsOnSubFrames(false);
    page.scripts().insert(script);
}

} // namespace

WebEngineView::WebEngineView(const Options &options, EditorViewClient &client, QWidget *parent)
    // Without a name it is off the record.
    : m_profile(std::make_unique<QWebEngineProfile>())
    , m_listener(std::make_unique<PageListener>(client))
    , m_page(std::make_unique<EditorPage>(m_profile.get(), client))
    , m_view(new QWebEngineView(parent))
    , m_sender(std::make_unique<HandOverSender>(*m_page))
    , m_fetcher(std::make_unique<TextFetcher>(*m_page))
{
    m_profile->setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
    m_profile->setHttpCacheType(QWebEngineProfile::MemoryHttpCache);
    QObject::connect(m_listener.get(), &PageListener::hasDocument, m_sender.get(), &HandOverSender::noteDocument);
    QObject::connect(m_listener.get(), &PageListener::hasHandedOver, m_sender.get(), &HandOverSender::noteEnd);
    m_channel.registerObject(QStringLiteral("program"), m_listener.get());
    m_page->setWebChannel(&m_channel, QWebEngineScript::ApplicationWorld);
    m_page->setBackgroundColor(options.background);
    addScripts(options);
    m_view->setPage(m_page.get());
    m_view->setContextMenuPolicy(Qt::NoContextMenu);
}

WebEngineView::~WebEngineView()
{
    // Before the page that it shows, which goes before its profile.
    m_fetcher.reset();
    m_sender.reset();
    delete m_view;
}

void WebEngineView::addScripts(const Options &options)
{
    // Nobody but our two scripts knows it; see page.js.
    const QString token = QUuid::createUuid().toString(QUuid::Id128);
    const auto ours = [&](const QString &name) {
        return sourceOf(QStringLiteral(":/lumenfold/editor/") + name)
            .replace(QStringLiteral("%TOKEN%"), token)
            .replace(QStringLiteral("%NAMES%"), options.messageNames.join(u' '));
    };
    add(*m_page, QStringLiteral("page"), ours(QStringLiteral("page.js")), QWebEngineScript::MainWorld);
    // In the other world, in the order in which they need each other.
    const QString separator = QStringLiteral("\n;\n");
    add(*m_page, QStringLiteral("courier"),
        sourceOf(QStringLiteral(":/qtwebchannel/qwebchannel.js")) + separator + ours(QStringLiteral("courier.js")) +
            separator + options.bridgeScript + separator + options.loadingBackgroundScript,
        QWebEngineScript::ApplicationWorld);
}

QWidget *WebEngineView::widget() const
{
    return m_view;
}

QUrl WebEngineView::address() const
{
    return m_page->url();
}

void WebEngineView::load(const QUrl &address)
{
    m_page->load(address);
}

void WebEngineView::stop()
{
    m_page->triggerAction(QWebEnginePage::Stop);
}

void WebEngineView::handOver(const QByteArray &members, const QByteArray &dataURL, const QString &origin,
                             std::function<bool()> isWanted, std::function<void(QString trouble)> done)
{
    m_sender->send(members, dataURL, origin, std::move(isWanted), std::move(done));
}

void WebEngineView::fetchText(const LongText &text, std::function<bool()> isWanted,
                              std::function<void(std::optional<QByteArrayList> parts)> done)
{
    m_fetcher->fetch(text, std::move(isWanted), std::move(done));
}

} // namespace lumenfold
