#include "tests/support/desktop/KeyringDaemon.h"

#include "tests/support/desktop/PrivateFolders.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDir>

#include <csignal>
#include <stdexcept>

namespace lumenfold::test {

/// A secret as it travels. Outside the unnamed namespace because the toolkit wants to know its name.
struct PlainSecret {
    QDBusObjectPath session;
    QByteArray parameters;
    QByteArray value;
    QString contentType;
};

QDBusArgument &operator<<(QDBusArgument &argument, const PlainSecret &secret)
{
    argument.beginStructure();
    argument << secret.session << secret.parameters << secret.value << secret.contentType;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PlainSecret &secret)
{
    argument.beginStructure();
    argument >> secret.session >> secret.parameters >> secret.value >> secret.contentType;
    argument.endStructure();
    return argument;
}

} // namespace lumenfold::test

Q_DECLARE_METATYPE(lumenfold::test::PlainSecret)

namespace lumenfold::test {
namespace {

const QString serviceName = QStringLiteral("org.freedesktop.secrets");
const QString servicePath = QStringLiteral("/org/freedesktop/secrets");
const QString serviceInterface = QStringLiteral("org.freedesktop.Secret.Service");
const QString collectionInterface = QStringLiteral("org.freedesktop.Secret.Collection");
const QString itemInterface = QStringLiteral("org.freedesktop.Secret.Item");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
const QString ownInterface = QStringLiteral("org.gnome.keyring.InternalUnsupportedGuiltRiddenInterface");

QByteArray keyringFile(const std::optional<QByteArray> &apiKey)
{
    QByteArray text = "[keyring]\ndisplay-name=Login\nctime=0\nmtime=0\nlock-on-idle=false\nlock-after=false\n";
    if (apiKey) {
        text += "\n[1]\nitem-type=0\ndisplay-name=LumenFold\nsecret=" + *apiKey + "\nmtime=0\nctime=0\n";
        int number = 0;
        for (const auto &[name, value] : KeyringDaemon::apiKeyAttributes().asKeyValueRange()) {
            text += "\n[1:attribute" + QByteArray::number(number++) + "]\nname=" + name.toUtf8() +
                    "\ntype=string\nvalue=" + value.toUtf8() + "\n";
        }
    }
    return text;
}

/// The daemon gives an item without a schema one of its own as soon as it has written its file.
KeyringDaemon::Attributes ownAttributes(KeyringDaemon::Attributes attributes)
{
    const QString schema = QStringLiteral("xdg:schema");
    if (attributes.value(schema) == QStringLiteral("org.freedesktop.Secret.Generic")) {
        attributes.remove(schema);
    }
    return attributes;
}

QDBusMessage send(const QString &connection, QDBusMessage message, const QVariantList &arguments)
{
    message.setArguments(arguments);
    return QDBusConnection(connection).call(message, QDBus::Block, static_cast<int>(defaultTimeout.count()));
}

} // namespace

KeyringDaemon::KeyringDaemon(const QString &busAddress, const KeyringDaemonOptions &options)
    : m_busAddress(busAddress)
    , m_connectionName(QStringLiteral("keyring ") + busAddress)
    , m_options(options)
    , m_collectionPath(servicePath + QStringLiteral("/collection/login"))
{
    qDBusRegisterMetaType<PlainSecret>();
    qDBusRegisterMetaType<Attributes>();
    if (!QDBusConnection::connectToBus(m_busAddress, m_connectionName).isConnected()) {
        throw std::runtime_error("no bus for the keyring");
    }
    const QDir keyrings(m_folders.data() + QStringLiteral("/keyrings"));
    keyrings.mkpath(QStringLiteral("."));
    writeFile(keyrings.filePath(QStringLiteral("default")), "login");
    if (!options.password) {
        writeFile(keyrings.filePath(QStringLiteral("login.keyring")), keyringFile(options.apiKey));
    }
    start();
    if (options.password) {
        const QVariantMap properties{{collectionInterface + QStringLiteral(".Label"), QStringLiteral("Login")}};
        const QVariantList made = call(servicePath, ownInterface, QStringLiteral("CreateWithMasterPassword"),
                                       {properties, plainSecret(*options.password)});
        m_collectionPath = made.value(0).value<QDBusObjectPath>().path();
        call(servicePath, serviceInterface, QStringLiteral("SetAlias"),
             {QStringLiteral("default"), QVariant::fromValue(QDBusObjectPath(m_collectionPath))});
        if (options.apiKey) {
            add(apiKeyAttributes(), *options.apiKey);
        }
    }
}

KeyringDaemon::~KeyringDaemon()
{
    m_process.reset();
    QDBusConnection::disconnectFromBus(m_connectionName);
}

void KeyringDaemon::kill()
{
    m_process->sendSignal(SIGKILL);
    if (!m_process->waitForExit()) {
        throw std::runtime_error("the keyring's daemon does not end");
    }
}

void KeyringDaemon::start()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    m_folders.applyTo(environment);
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_busAddress);
    m_process.reset();
    m_process = std::make_unique<Process>(ProcessOptions{
        .program = QStringLiteral("gnome-keyring-daemon"),
        .arguments = {QStringLiteral("--foreground"), QStringLiteral("--components=secrets")},
        .environment = environment,
        .logFile = m_folders.path("keyring.log"),
    });
    waitUntil("the keyring's daemon", [this] {
        if (!m_process->isRunning()) {
            throw std::runtime_error("the keyring's daemon ended: " + m_process->log().toStdString());
        }
        const QDBusMessage ping = QDBusMessage::createMethodCall(
            serviceName, servicePath, QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping"));
        return send(m_connectionName, ping, {}).type() == QDBusMessage::ReplyMessage;
    });
    if (!m_options.password) {
        unlock();
    }
}

void KeyringDaemon::hang()
{
    m_process->sendSignal(SIGSTOP);
}

void KeyringDaemon::letGoOn()
{
    m_process->sendSignal(SIGCONT);
}

void KeyringDaemon::lock()
{
    call(servicePath, serviceInterface, QStringLiteral("Lock"),
         {QVariant::fromValue(QList{QDBusObjectPath(m_collectionPath)})});
}

void KeyringDaemon::unlock()
{
    if (m_options.password) {
        call(servicePath, ownInterface, QStringLiteral("UnlockWithMasterPassword"),
             {QVariant::fromValue(QDBusObjectPath(m_collectionPath)), plainSecret(*m_options.password)});
    } else {
        call(servicePath, serviceInterface, QStringLiteral("Unlock"),
             {QVariant::fromValue(QList{QDBusObjectPath(m_collectionPath)})});
    }
}

QList<KeyringDaemon::Item> KeyringDaemon::items()
{
    const QDBusObjectPath session(openSession());
    QList<Item> found;
    const QList<QString> paths = itemPaths();
    for (const QString &path : paths) {
        try {
            const QVariantList attributes =
                call(path, propertiesInterface, QStringLiteral("Get"), {itemInterface, QStringLiteral("Attributes")});
            const QVariantList secret =
                call(path, itemInterface, QStringLiteral("GetSecret"), {QVariant::fromValue(session)});
            found.append({.attributes = ownAttributes(
                              qdbus_cast<Attributes>(attributes.value(0).value<QDBusVariant>().variant())),
                          .secret = qdbus_cast<PlainSecret>(secret.value(0)).value});
        } catch (const std::runtime_error &) {
            // Removed meanwhile.
        }
    }
    return found;
}

void KeyringDaemon::add(const Attributes &attributes, const QByteArray &secret)
{
    const QVariantMap properties{
        {itemInterface + QStringLiteral(".Label"), QStringLiteral("of another program")},
        {itemInterface + QStringLiteral(".Attributes"), QVariant::fromValue(attributes)},
    };
    call(m_collectionPath, collectionInterface, QStringLiteral("CreateItem"), {properties, plainSecret(secret), false});
}

void KeyringDaemon::removeAll()
{
    const QList<QString> paths = itemPaths();
    for (const QString &path : paths) {
        call(path, itemInterface, QStringLiteral("Delete"));
    }
}

KeyringDaemon::Attributes KeyringDaemon::apiKeyAttributes()
{
    return {{QStringLiteral("service"), QStringLiteral("org.lumenfold.LumenFold")},
            {QStringLiteral("account"), QStringLiteral("org.lumenfold.LumenFold.apiKey")}};
}

QVariantList KeyringDaemon::call(const QString &path, const QString &interface, const QString &method,
                                 const QVariantList &arguments)
{
    const QDBusMessage answer =
        send(m_connectionName, QDBusMessage::createMethodCall(serviceName, path, interface, method), arguments);
    if (answer.type() != QDBusMessage::ReplyMessage) {
        throw std::runtime_error("the keyring's answer to " + method.toStdString() + ": " +
                                 answer.errorMessage().toStdString());
    }
    return answer.arguments();
}

QList<QString> KeyringDaemon::itemPaths()
{
    const QVariantList answer =
        call(servicePath, serviceInterface, QStringLiteral("SearchItems"), {QVariant::fromValue(Attributes())});
    QList<QString> paths;
    const auto unlocked = qdbus_cast<QList<QDBusObjectPath>>(answer.value(0));
    for (const QDBusObjectPath &path : unlocked) {
        paths.append(path.path());
    }
    return paths;
}

QVariant KeyringDaemon::plainSecret(const QByteArray &secret)
{
    return QVariant::fromValue(PlainSecret{.session = QDBusObjectPath(openSession()),
                                           .parameters = {},
                                           .value = secret,
                                           .contentType = QStringLiteral("text/plain")});
}

QString KeyringDaemon::openSession()
{
    const QVariantList answer = call(servicePath, serviceInterface, QStringLiteral("OpenSession"),
                                     {QStringLiteral("plain"), QVariant::fromValue(QDBusVariant(QString()))});
    return answer.value(1).value<QDBusObjectPath>().path();
}

} // namespace lumenfold::test
