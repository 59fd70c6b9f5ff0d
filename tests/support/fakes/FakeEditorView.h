#pragma once

#include "editor/EditorModule.h"

#include <QList>
#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace lumenfold::test {

/// A page that a test plays.
class FakeEditorView : public EditorView {
public:
    struct Delivery {
        QByteArray members;
        QByteArray dataURL;
        QString origin;
        std::function<void(QString)> done;
    };
    /// A text that was asked for.
    struct Fetch {
        LongText text;
        std::function<bool()> isWanted;
        std::function<void(std::optional<QByteArrayList>)> done;
    };
    /// Outlives the views, which come and go.
    struct Log {
        QList<EditorView::Options> made;
        QList<QUrl> loads;
        QList<Delivery> deliveries;
        QList<Fetch> fetches;
        int stops = 0;
        /// How views came about, from the first.
        QStringList steps;
        std::function<void()> onEngineStart;
        /// The one that there is now.
        FakeEditorView *view = nullptr;

        [[nodiscard]] EditorModule module()
        {
            return {
                .startEngine =
                    [this] {
                        steps.append(QStringLiteral("engine"));
                        QTimer::singleShot(0, &m_here,
                                           [this] { steps.append(QStringLiteral("turn of the event loop")); });
                        if (onEngineStart) {
                            onEngineStart();
                        }
                    },
                .makeView =
                    [this](const EditorView::Options &options, EditorViewClient &client, QWidget *parent) {
                        steps.append(QStringLiteral("view"));
                        return std::make_unique<FakeEditorView>(*this, options, client, parent);
                    },
            };
        }

    private:
        QObject m_here;
    };

    FakeEditorView(Log &log, const Options &options, EditorViewClient &client, QWidget *parent)
        : m_log(log), m_client(client), m_widget(new QWidget(parent))
    {
        log.made.append(options);
        log.view = this;
    }
    ~FakeEditorView() override
    {
        m_log.view = nullptr;
        delete m_widget;
    }

    [[nodiscard]] QWidget *widget() const override { return m_widget; }
    [[nodiscard]] QUrl address() const override { return shown; }
    void load(const QUrl &address) override { m_log.loads.append(address); }
    void stop() override { ++m_log.stops; }
    void handOver(const QByteArray &members, const QByteArray &dataURL, const QString &origin, std::function<bool()>,
                  std::function<void(QString)> done) override
    {
        m_log.deliveries.append({members, dataURL, origin, std::move(done)});
    }
    void fetchText(const LongText &text, std::function<bool()> isWanted,
                   std::function<void(std::optional<QByteArrayList>)> done) override
    {
        m_log.fetches.append({text, std::move(isWanted), std::move(done)});
    }

    [[nodiscard]] EditorViewClient &client() const { return m_client; }

    /// A document of that address is there.
    void show(const QUrl &address)
    {
        shown = address;
        document = QStringLiteral("document %1").arg(++m_documents);
        m_client.documentCreated();
    }
    /// What our script in the page sends for a message that is short or no text. False, because nothing of it is
    /// fetched.
    bool post(const QString &name, const std::optional<QString> &text, const QString &origin) // NOLINT
    {
        const QJsonValue body = text ? QJsonValue(*text) : QJsonValue();
        return m_client.messageReceived(message(name, text.has_value(), text ? text->size() : 0, body, origin));
    }
    /// The same for a text that is too long to be sent with it. True if the page is to wait until it is fetched.
    bool announce(const QString &name, qsizetype length, const QString &origin) // NOLINT
    {
        return m_client.messageReceived(message(name, true, length, {}, origin));
    }

    QUrl shown;
    QString document;

private:
    [[nodiscard]] QJsonObject message(const QString &name, bool isText, qsizetype length, const QJsonValue &text,
                                      const QString &origin)
    {
        return {{QStringLiteral("document"), document}, {QStringLiteral("message"), m_messages++},
                {QStringLiteral("length"), length},     {QStringLiteral("name"), name},
                {QStringLiteral("origin"), origin},     {QStringLiteral("isText"), isText},
                {QStringLiteral("text"), text}};
    }

    Log &m_log;
    EditorViewClient &m_client;
    QPointer<QWidget> m_widget;
    int m_messages = 0;
    int m_documents = 0;
};

} // namespace lumenfold::test
