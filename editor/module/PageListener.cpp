#include "editor/module/PageListener.h"

#include "editor/EditorView.h"

namespace lumenfold {

PageListener::PageListener(EditorViewClient &client) : m_client(client) {}

bool PageListener::take(const QJsonObject &piece)
{
    return m_client.messagePieceReceived(piece);
}

void PageListener::documentCreated()
{
    m_client.documentCreated();
}

void PageListener::linkClicked(const QString &address)
{
    (void)m_client.allowsNavigation(QUrl(address), NavigationKind::linkClicked);
}

} // namespace lumenfold
