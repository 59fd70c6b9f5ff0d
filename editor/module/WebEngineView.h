#pragma once

#include "editor/EditorView.h"

#include <QPointer>
#include <QWebChannel>
#include <QWebEngineProfile>

#include <memory>

class QWebEngineView;

namespace lumenfold {

class EditorPage;
class HandOverSender;
class PageListener;
class TextFetcher;

/// The editor's page in the web engine. With it go the page, its processes, and all that the page has stored: its
/// profile is kept in memory only.
class WebEngineView : public EditorView {
public:
    WebEngineView(const Options &options, EditorViewClient &client, QWidget *parent);
    ~WebEngineView() override;

    [[nodiscard]] QWidget *widget() const override;
    [[nodiscard]] QUrl address() const override;
    void load(const QUrl &address) override;
    void stop() override;
    void handOver(const QByteArray &members, const QByteArray &dataURL, const QString &origin,
                  std::function<bool()> isWanted, std::function<void(QString trouble)> done) override;
    void fetchText(const LongText &text, std::function<bool()> isWanted,
                   std::function<void(std::optional<QByteArrayList> parts)> done) override;

private:
    void addScripts(const Options &options);

    /// In the order in which they need each other; they go in the opposite order.
    std::unique_ptr<QWebEngineProfile> m_profile;
    std::unique_ptr<PageListener> m_listener;
    QWebChannel m_channel;
    std::unique_ptr<EditorPage> m_page;
    QPointer<QWebEngineView> m_view;
    std::unique_ptr<HandOverSender> m_sender;
    std::unique_ptr<TextFetcher> m_fetcher;
};

} // namespace lumenfold
