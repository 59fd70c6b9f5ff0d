#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QUrl>
#include <QWebEngineUrlSchemeHandler>

#include <functional>

class QWebEnginePage;

namespace lumenfold {

/// Takes screenshots into a page. An 8K screenshot is a text of more than a hundred million characters, and every way
/// to pass a script one takes the main thread some ten milliseconds for each million. So our script in the page
/// (courier.js) fetches it from an address of a scheme of ours, which the engine reads on a thread of its own. An
/// address is good for one request of the right origin, and nobody can guess it.
class HandOverSender : public QWebEngineUrlSchemeHandler {
    Q_OBJECT

public:
    static constexpr QLatin1StringView scheme{"lumenfold-handover"};
    /// Once, before the engine is started.
    static void registerScheme();

    /// The page outlives the sender.
    explicit HandOverSender(QWebEnginePage &page);
    ~HandOverSender() override;

    /// As in EditorView::handOver.
    void send(const QByteArray &members, const QByteArray &dataURL, const QString &origin,
              std::function<bool()> isWanted, std::function<void(QString trouble)> done);
    /// Our script in the page says so; `trouble` is empty when all went well.
    void noteEnd(int number, const QString &trouble);
    /// The page has another document.
    void noteDocument();

    void requestStarted(QWebEngineUrlRequestJob *job) override;

private:
    struct Transfer {
        int number = 0;
        /// Empty once it was fetched.
        QUrl address;
        QByteArray dataURL;
        QUrl origin;
        std::function<bool()> isWanted;
        std::function<void(QString trouble)> done;
    };

    [[nodiscard]] bool isExpected(const QWebEngineUrlRequestJob &job) const;
    void end(const QString &trouble);

    QWebEnginePage &m_page;
    Transfer m_transfer;
    int m_count = 0;
};

} // namespace lumenfold
