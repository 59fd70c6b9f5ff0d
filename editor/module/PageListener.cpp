#include "editor/module/PageListener.h"

#include "editor/EditorView.h"

namespace lumenfold {

PageListener::PageListener(EditorViewClient &client) : m_client(client) {}

bool PageListener::take(const QJsonObject &message)
{
    return m_client.messageReceived(message);
}

void PageListener::documentCreated()
{
    Q_EMIT hasDocument();
    m_client.documentCreated();
}

void PageListener::handOverEnded(int number, const QString &trouble)
{
    Q_EMIT hasHandedOver(number, trouble);
}

void PageListener::linkClicked(const QString &address)
{
    (void)m_client.allowsNavigation(QUrl(address), NavigationKind::linkClicked);
}

} // namespace lumenfold
