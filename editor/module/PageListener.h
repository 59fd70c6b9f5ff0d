#pragma once

#include <QJsonObject>
#include <QObject>

namespace lumenfold {

class EditorViewClient;

/// What our own script in the page (courier.js) can call, and nobody else: the channel that it is on ends in a world of
/// scripts that the page has no part in.
class PageListener : public QObject {
    Q_OBJECT

public:
    explicit PageListener(EditorViewClient &client);

    /// True when the text of the message will be fetched.
    Q_INVOKABLE bool take(const QJsonObject &message);
    Q_INVOKABLE void documentCreated();
    /// What became of a screenshot; `trouble` is empty when all went well.
    Q_INVOKABLE void handOverEnded(int number, const QString &trouble);
    /// In the main frame; the page does not go there by itself.
    Q_INVOKABLE void linkClicked(const QString &address);

Q_SIGNALS:
    void hasDocument();
    void hasHandedOver(int number, const QString &trouble);

private:
    EditorViewClient &m_client;
};

} // namespace lumenfold
