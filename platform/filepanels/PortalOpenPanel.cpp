#include "platform/filepanels/PortalOpenPanel.h"

#include "platform/filepanels/PortalFolderRequest.h"

#include <QCoroSignal>

#include <QScopedPointer>

#include <memory>

namespace lumenfold {

PortalOpenPanel::PortalOpenPanel(OpenPanel &fallback, std::chrono::milliseconds patience)
    : m_fallback(fallback), m_patience(patience)
{
}

QCoro::Task<std::optional<QString>> PortalOpenPanel::chooseDirectory(Request request)
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) {
        // Goes outside its own signal.
        const std::unique_ptr<PortalFolderRequest, QScopedPointerDeleteLater> asked(new PortalFolderRequest(bus));
        asked->send(request, m_patience);
        co_await qCoro(asked.get(), &PortalFolderRequest::ended);
        if (asked->outcome() == PortalFolderRequest::Outcome::answered) {
            co_return asked->directory();
        }
    }
    std::optional<QString> chosen = co_await m_fallback.chooseDirectory(request);
    co_return chosen;
}

} // namespace lumenfold
