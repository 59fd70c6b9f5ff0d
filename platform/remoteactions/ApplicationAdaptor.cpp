#include "platform/remoteactions/ApplicationAdaptor.h"

#include <QDebug>

#include <utility>

namespace lumenfold {
namespace {

/// What somebody called an action, for one line of the log.
QString loggable(const QString &name)
{
    constexpr qsizetype longest = 64;
    QString text = name.left(longest);
    for (QChar &character : text) {
        if (!character.isPrint()) {
            character = u'?';
        }
    }
    return name.size() > longest ? text + QChar(0x2026) : text;
}

} // namespace

ApplicationAdaptor::ApplicationAdaptor(RemoteCommands commands, QObject *parent)
    : QDBusAbstractAdaptor(parent), m_commands(std::move(commands))
{
}

void ApplicationAdaptor::Activate(const QVariantMap &)
{
    if (m_commands.activate) {
        m_commands.activate();
    }
}

void ApplicationAdaptor::Open(const QStringList &addresses, const QVariantMap &)
{
    qWarning().noquote().nospace() << "LumenFold: asked to open " << addresses.size() << " files, which it does not do";
}

void ApplicationAdaptor::ActivateAction(const QString &name, const QVariantList &parameters, const QVariantMap &)
{
    const auto action = m_commands.actions.constFind(name);
    if (action == m_commands.actions.constEnd()) {
        qWarning().noquote().nospace() << "LumenFold: asked for an unknown action: " << loggable(name);
    } else if (!parameters.isEmpty()) {
        qWarning().noquote().nospace() << "LumenFold: the action " << name << " takes no parameters";
    } else {
        (*action)();
    }
}

} // namespace lumenfold
