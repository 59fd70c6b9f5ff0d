#include "platform/session/SessionEnd.h"

#include <QEvent>
#include <QGuiApplication>
#include <QSessionManager>

#include <utility>

namespace lumenfold {

SessionEnd::SessionEnd(Handlers handlers) : m_handlers(std::move(handlers))
{
    auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    connect(
        application, &QGuiApplication::commitDataRequest, this, [this](QSessionManager &) { m_handlers.save(); },
        Qt::DirectConnection);
    application->installEventFilter(this);
}

bool SessionEnd::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Quit && watched == QCoreApplication::instance()) {
        // The toolkit would ask every window first, and a card does not let itself be closed.
        event->accept();
        m_handlers.end();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace lumenfold
