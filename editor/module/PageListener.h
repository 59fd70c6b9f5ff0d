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

    /// False when the rest of the message is not wanted.
    Q_INVOKABLE bool take(const QJsonObject &piece);
    Q_INVOKABLE void documentCreated();
    /// In the main frame; the page does not go there by itself.
    Q_INVOKABLE void linkClicked(const QString &address);

private:
    EditorViewClient &m_client;
};

} // namespace lumenfold
