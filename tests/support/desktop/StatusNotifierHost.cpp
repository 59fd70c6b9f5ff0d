#include "tests/support/desktop/StatusNotifierHost.h"

#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QtEndian>

#include <algorithm>
#include <stdexcept>

namespace lumenfold::test {
namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString notifierInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");
const QString notifierProperties = QStringLiteral("org.freedesktop.DBus.Properties");

QString nextConnectionName()
{
    static int number = 0;
    return QStringLiteral("status notifier host %1").arg(++number);
}

struct Pixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;
};

QList<Pixmap> pixmapsIn(const QVariant &value)
{
    QList<Pixmap> pixmaps;
    const auto argument = value.value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        Pixmap pixmap;
        argument.beginStructure();
        argument >> pixmap.width >> pixmap.height >> pixmap.pixels;
        argument.endStructure();
        pixmaps.append(pixmap);
    }
    argument.endArray();
    return pixmaps;
}

QString shortcutIn(const QVariant &value)
{
    QStringList shortcuts;
    const auto argument = value.value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        QStringList tokens;
        argument >> tokens;
        shortcuts.append(tokens.join(u'+'));
    }
    argument.endArray();
    return shortcuts.join(u' ');
}

StatusNotifierHost::Entry entryIn(const QDBusArgument &layout)
{
    StatusNotifierHost::Entry entry;
    QVariantMap properties;
    layout.beginStructure();
    layout >> entry.id >> properties;
    layout.beginArray();
    layout.endArray();
    layout.endStructure();
    entry.isSeparator = properties.value(QStringLiteral("type")).toString() == QStringLiteral("separator");
    entry.label = properties.value(QStringLiteral("label")).toString();
    entry.isEnabled = properties.value(QStringLiteral("enabled"), true).toBool();
    if (properties.contains(QStringLiteral("shortcut"))) {
        entry.shortcut = shortcutIn(properties.value(QStringLiteral("shortcut")));
    }
    entry.icon = QImage::fromData(properties.value(QStringLiteral("icon-data")).toByteArray(), "PNG");
    return entry;
}

} // namespace

StatusNotifierHost::StatusNotifierHost(const QString &busAddress, Panel panel, Manners manners)
    : m_connectionName(nextConnectionName())
    , m_bus(QDBusConnection::connectToBus(busAddress, m_connectionName))
    , m_panel(panel)
    , m_manners(manners)
{
    m_bus.connect(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                  QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"), this,
                  SLOT(ownerChanged(QString, QString, QString)));
    for (const QString &interface : {notifierInterface, menuInterface}) {
        m_bus.connect(QString(), QString(), interface, QString(), this, SLOT(signalCame(QDBusMessage)));
    }
    if (!m_bus.registerObject(watcherPath, this,
                              QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals |
                                  QDBusConnection::ExportAllProperties) ||
        !m_bus.registerService(watcherName)) {
        throw std::runtime_error("no status notifier watcher on this bus");
    }
}

StatusNotifierHost::~StatusNotifierHost()
{
    m_bus.unregisterService(watcherName);
    QDBusConnection::disconnectFromBus(m_connectionName);
}

void StatusNotifierHost::setPanel(Panel panel)
{
    m_panel = panel;
    if (panel == Panel::there) {
        Q_EMIT StatusNotifierHostRegistered();
    } else {
        Q_EMIT StatusNotifierHostUnregistered();
    }
}

void StatusNotifierHost::waitForItem()
{
    waitUntil("a status item", [this] { return m_items.size() == 1; });
}

QVariant StatusNotifierHost::itemProperty(const QString &name)
{
    const QDBusMessage answer = call(itemPath, notifierProperties, QStringLiteral("Get"), {notifierInterface, name});
    return answer.arguments().value(0).value<QDBusVariant>().variant();
}

QImage StatusNotifierHost::pixmap(int side)
{
    const QList<Pixmap> pixmaps = pixmapsIn(itemProperty(QStringLiteral("IconPixmap")));
    for (const Pixmap &pixmap : pixmaps) {
        if (pixmap.width != side || pixmap.height != side || pixmap.pixels.size() != qsizetype{4} * side * side) {
            continue;
        }
        QImage image(side, side, QImage::Format_ARGB32);
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                image.setPixel(x, y, qFromBigEndian<quint32>(pixmap.pixels.constData() + 4 * (y * side + x)));
            }
        }
        return image;
    }
    return {};
}

QList<int> StatusNotifierHost::pixmapSides()
{
    QList<int> sides;
    const QList<Pixmap> pixmaps = pixmapsIn(itemProperty(QStringLiteral("IconPixmap")));
    for (const Pixmap &pixmap : pixmaps) {
        sides.append(pixmap.width);
    }
    return sides;
}

QList<StatusNotifierHost::Entry> StatusNotifierHost::menu()
{
    const QDBusMessage answer = callMenu(QStringLiteral("GetLayout"), {0, -1, QStringList()});
    if (answer.signature() != QStringLiteral("u(ia{sv}av)")) {
        throw std::runtime_error("the menu is none: " + answer.signature().toStdString());
    }
    QList<Entry> entries;
    const auto layout = answer.arguments().value(1).value<QDBusArgument>();
    int root = -1;
    QVariantMap properties;
    layout.beginStructure();
    layout >> root >> properties;
    layout.beginArray();
    while (!layout.atEnd()) {
        QDBusVariant child;
        layout >> child;
        entries.append(entryIn(child.variant().value<QDBusArgument>()));
    }
    layout.endArray();
    layout.endStructure();
    return entries;
}

QStringList StatusNotifierHost::menuLines()
{
    QStringList lines;
    const QList<Entry> entries = menu();
    for (const Entry &entry : entries) {
        QString line = entry.isSeparator ? QStringLiteral("-") : entry.label;
        if (!entry.isEnabled) {
            line.prepend(QStringLiteral("[ ] "));
        }
        if (!entry.shortcut.isEmpty()) {
            line += QStringLiteral(" (%1)").arg(entry.shortcut);
        }
        lines.append(line);
    }
    return lines;
}

void StatusNotifierHost::choose(const QString &label)
{
    const QList<Entry> entries = menu();
    const auto found = std::ranges::find_if(entries, [&label](const Entry &entry) { return entry.label == label; });
    if (found == entries.end()) {
        throw std::runtime_error("the menu has no " + label.toStdString());
    }
    if (const QDBusMessage answer = sendEvent(found->id, QStringLiteral("clicked"));
        answer.type() != QDBusMessage::ReplyMessage) {
        throw std::runtime_error("the menu does not take a click: " + answer.errorMessage().toStdString());
    }
}

QDBusMessage StatusNotifierHost::sendEvent(int id, const QString &event)
{
    return callMenu(QStringLiteral("Event"), {id, event, QVariant::fromValue(QDBusVariant(0)), 0U});
}

QDBusMessage StatusNotifierHost::callItem(const QString &method, const QVariantList &arguments)
{
    return call(itemPath, notifierInterface, method, arguments);
}

QDBusMessage StatusNotifierHost::callMenu(const QString &method, const QVariantList &arguments)
{
    const auto path = itemProperty(QStringLiteral("Menu")).value<QDBusObjectPath>();
    return call(path.path(), menuInterface, method, arguments);
}

void StatusNotifierHost::RegisterStatusNotifierItem(const QString &service, const QDBusMessage &call)
{
    if (m_manners == Manners::silent) {
        call.setDelayedReply(true);
        return;
    }
    ++m_registrations;
    const QString item = service.startsWith(u'/') ? call.service() : service;
    if (!m_items.contains(item)) {
        m_items.append(item);
        Q_EMIT StatusNotifierItemRegistered(item);
    }
}

void StatusNotifierHost::RegisterStatusNotifierHost(const QString &)
{
    setPanel(Panel::there);
}

void StatusNotifierHost::ownerChanged(const QString &name, const QString &, const QString &now)
{
    if (now.isEmpty() && m_items.removeAll(name) > 0) {
        Q_EMIT StatusNotifierItemUnregistered(name);
    }
}

void StatusNotifierHost::signalCame(const QDBusMessage &signal)
{
    m_signals.append(signal.member());
}

QDBusMessage StatusNotifierHost::call(const QString &path, const QString &interface, const QString &method,
                                      const QVariantList &arguments)
{
    waitForItem();
    QDBusMessage question = QDBusMessage::createMethodCall(m_items.first(), path, interface, method);
    question.setArguments(arguments);
    const QDBusPendingCall answer = m_bus.asyncCall(question);
    waitUntil("the status item to answer", [&answer] { return answer.isFinished(); });
    return answer.reply();
}

} // namespace lumenfold::test
