#pragma once

#include "tests/support/desktop/Wait.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QImage>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>

namespace lumenfold::test {

/// A desktop's side of status items: the watcher that items register with and, unless told otherwise, a panel that
/// shows them. It reads everything over a bus connection of its own, as it travels, and may live in the process of the
/// item: it asks asynchronously and lets the events run meanwhile. Its questions throw std::runtime_error when nobody
/// answers.
class StatusNotifierHost : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasPanel)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)

public:
    enum class Panel { none, there };
    enum class Manners {
        good,
        /// Takes every question and answers none.
        silent,
    };

    struct Entry {
        int id = 0;
        bool isSeparator = false;
        QString label;
        bool isEnabled = true;
        /// "Super+Alt+1"; empty for none.
        QString shortcut;
        QImage icon;
    };

    explicit StatusNotifierHost(const QString &busAddress, Panel panel = Panel::there, Manners manners = Manners::good);
    /// Takes the watcher off the bus.
    ~StatusNotifierHost() override;

    /// The panel comes or goes; the watcher says so.
    void setPanel(Panel panel);

    /// As they registered.
    [[nodiscard]] QStringList items() const { return m_items; }
    [[nodiscard]] bool hasPanel() const { return m_panel == Panel::there; }
    [[nodiscard]] int protocolVersion() const { return 0; }
    /// Returns when exactly one item is registered.
    void waitForItem();
    [[nodiscard]] int registrations() const { return m_registrations; }

    /// Of the one item.
    [[nodiscard]] QVariant itemProperty(const QString &name);
    /// Its picture of that many pixels; null when it has none.
    [[nodiscard]] QImage pixmap(int side);
    [[nodiscard]] QList<int> pixmapSides();
    /// What the item says instead of being asked: "NewIcon", "LayoutUpdated", ...
    [[nodiscard]] int signalCount(const QString &name) const { return static_cast<int>(m_signals.count(name)); }

    [[nodiscard]] QList<Entry> menu();
    /// One line for each entry: "[ ]" before a disabled one, the shortcut in brackets behind, "-" for separators.
    [[nodiscard]] QStringList menuLines();
    /// As a panel does it when the user chooses this one, whether or not it is enabled.
    void choose(const QString &label);
    [[nodiscard]] QDBusMessage sendEvent(int id, const QString &event);
    [[nodiscard]] QDBusMessage callItem(const QString &method, const QVariantList &arguments);
    [[nodiscard]] QDBusMessage callMenu(const QString &method, const QVariantList &arguments);

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names on the bus
    void RegisterStatusNotifierItem(const QString &service, const QDBusMessage &call);
    void RegisterStatusNotifierHost(const QString &service);
    // NOLINTEND(readability-identifier-naming)

    void ownerChanged(const QString &name, const QString &before, const QString &now);
    void signalCame(const QDBusMessage &signal);

Q_SIGNALS:
    // NOLINTBEGIN(readability-identifier-naming)
    void StatusNotifierItemRegistered(const QString &service);
    void StatusNotifierItemUnregistered(const QString &service);
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();
    // NOLINTEND(readability-identifier-naming)

private:
    [[nodiscard]] QDBusMessage call(const QString &path, const QString &interface, const QString &method,
                                    const QVariantList &arguments);

    const QString m_connectionName;
    QDBusConnection m_bus;
    Panel m_panel;
    const Manners m_manners;
    QStringList m_items;
    int m_registrations = 0;
    QStringList m_signals;
};

} // namespace lumenfold::test
