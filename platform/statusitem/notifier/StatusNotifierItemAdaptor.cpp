#include "platform/statusitem/notifier/StatusNotifierItemAdaptor.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <utility>

namespace lumenfold {

StatusNotifierItemAdaptor::StatusNotifierItemAdaptor(QString menuPath, QObject *parent)
    : QDBusAbstractAdaptor(parent), m_menuPath(std::move(menuPath))
{
    registerNotifierTypes();
}

void StatusNotifierItemAdaptor::setPicture(NotifierPicture picture)
{
    const bool isOtherFolder = picture.iconThemePath != m_picture.iconThemePath;
    m_picture = std::move(picture);
    if (isOtherFolder) {
        Q_EMIT NewIconThemePath(m_picture.iconThemePath);
    }
    Q_EMIT NewIcon();
}

QString StatusNotifierItemAdaptor::id() const
{
    return QCoreApplication::applicationName();
}

QString StatusNotifierItemAdaptor::title() const
{
    return QGuiApplication::applicationDisplayName();
}

NotifierToolTip StatusNotifierItemAdaptor::toolTip() const
{
    return {.iconName = {}, .pixmaps = {}, .title = title(), .text = {}};
}

void StatusNotifierItemAdaptor::ContextMenu(int x, int y)
{
    requestMenu(x, y);
}

void StatusNotifierItemAdaptor::Activate(int x, int y)
{
    requestMenu(x, y);
}

void StatusNotifierItemAdaptor::SecondaryActivate(int, int) {}

void StatusNotifierItemAdaptor::Scroll(int, const QString &) {}

void StatusNotifierItemAdaptor::requestMenu(int x, int y) const
{
    if (onMenuRequested) {
        onMenuRequested({x, y});
    }
}

} // namespace lumenfold
