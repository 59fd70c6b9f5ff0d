#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <functional>

class QWebEnginePage;

namespace lumenfold {

/// Takes screenshots into a page, one piece after the other: an 8K screenshot is a text of more than a hundred million
/// characters, which takes the main thread far too long in one piece.
class HandOverSender : public QObject {
    Q_OBJECT

public:
    /// The page outlives the sender.
    explicit HandOverSender(QWebEnginePage &page);

    /// As in EditorView::handOver.
    void send(const QByteArray &members, const QByteArray &dataURL, const QString &origin,
              std::function<bool()> isWanted, std::function<void(QString trouble)> done);

private:
    struct Transfer {
        int number = 0;
        QByteArray dataURL;
        qsizetype sent = 0;
        QString origin;
        std::function<bool()> isWanted;
        std::function<void(QString trouble)> done;
    };

    /// Calls one of the functions that courier.js has for us, then `next` if that went well.
    void call(const QString &call, std::function<void()> next);
    void sendNext();
    void end(const QString &trouble);

    QWebEnginePage &m_page;
    Transfer m_transfer;
    int m_count = 0;
};

} // namespace lumenfold
