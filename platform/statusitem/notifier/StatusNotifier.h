#pragma once

#include "platform/session/BusName.h"
#include "platform/statusitem/StatusItem.h"
#include "platform/statusitem/notifier/StatusNotifierItemAdaptor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QPoint>
#include <QString>

#include <functional>
#include <memory>

namespace lumenfold {

class DBusMenuAdaptor;

/// The status item on the session bus (StatusNotifierItem), registered with the desktop's watcher whenever there is
/// one. Asks and never waits: a watcher that hangs only leaves the standing unknown.
class StatusNotifier : public QObject {
    Q_OBJECT

public:
    enum class Standing {
        /// Nobody has answered yet.
        unknown,
        /// A panel of the desktop has the item.
        shown,
        /// There is no watcher, or no panel that would show what it knows.
        notShown,
    };

    /// Puts the item on the bus and asks for the watcher. Without a bus it is never shown.
    explicit StatusNotifier(const QDBusConnection &bus);
    ~StatusNotifier() override;

    [[nodiscard]] Standing standing() const { return m_standing; }
    void setPicture(NotifierPicture picture);
    void setMenu(Menu menu);

    std::function<void()> onStandingChanged;
    /// A desktop that does not show the menu itself; root pixels.
    std::function<void(QPoint place)> onMenuRequested;

private Q_SLOTS:
    void ownerChanged(const QString &name, const QString &before, const QString &now);
    void askForHost();
    void busLost();

private:
    void watch();
    void requestName();
    void registerItem();
    void setStanding(Standing standing);
    void ask(const QDBusMessage &question, const std::function<void(const QDBusMessage &answer)> &onAnswer);

    QDBusConnection m_bus;
    /// What is put on the bus: each has one adaptor.
    QObject m_itemObject;
    QObject m_menuObject;
    StatusNotifierItemAdaptor *m_item;
    DBusMenuAdaptor *m_menu;
    /// What the item is registered under.
    QString m_name;
    std::unique_ptr<BusName> m_ownName;
    bool m_isRegistered = false;
    /// Counts the watchers that came and went, so that what one of them answers late is not taken for another's word.
    int m_watcherNumber = 0;
    Standing m_standing = Standing::unknown;
};

} // namespace lumenfold
