#include "tests/support/desktop/Session.h"

#include "tests/support/desktop/PrivateFolders.h"
#include "tests/support/desktop/Windows.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <stdexcept>

namespace lumenfold::test {
namespace {

QByteArray readLine(int descriptor)
{
    QByteArray line;
    pollfd readable{.fd = descriptor, .events = POLLIN, .revents = 0};
    char byte = 0;
    while (::poll(&readable, 1, static_cast<int>(defaultTimeout.count())) > 0 && ::read(descriptor, &byte, 1) == 1 &&
           byte != '\n') {
        line.append(byte);
    }
    return line;
}

const QByteArray plainCompositor = "backend = \"xrender\"; vsync = false; shadow = false; fading = false;\n";
const QByteArray fadingCompositor = "backend = \"xrender\"; vsync = false; shadow = true; fading = true;\n"
                                    "fade-in-step = 0.03; fade-out-step = 0.03; fade-delta = 5;\n";

// Without its first line i3 takes it for a file of an old version and puts a bar into it.
const QByteArray i3Configuration = "# i3 config file (v4)\n"
                                   "font pango:monospace 8\n"
                                   "default_border none\n"
                                   "default_floating_border none\n"
                                   "focus_on_window_activation focus\n";

ProcessOptions program(WindowManagerKind kind, const PrivateFolders &folders)
{
    switch (kind) {
    case WindowManagerKind::openbox:
        return {.program = QStringLiteral("openbox"), .arguments = {QStringLiteral("--sm-disable")}};
    case WindowManagerKind::xfwm4:
        return {.program = QStringLiteral("xfwm4"), .arguments = {QStringLiteral("--compositor=off")}};
    case WindowManagerKind::i3: {
        const QString configuration = folders.path("config/i3.conf");
        writeFile(configuration, i3Configuration);
        return {.program = QStringLiteral("i3"), .arguments = {QStringLiteral("-c"), configuration}};
    }
    case WindowManagerKind::none:
        break;
    }
    return {};
}

/// As the standard one, with services of the test's choice.
const QByteArray busConfiguration =
    "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
    " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
    "<busconfig><type>session</type><keep_umask/><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth>\n"
    "<servicedir>SERVICES</servicedir>\n"
    "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
    "<allow own=\"*\"/></policy></busconfig>\n";

/// The services that are installed, without those that ask people for passwords.
void linkServices(const QString &folder, KeyringActivation activation)
{
    const QDir target(folder);
    target.mkpath(QStringLiteral("."));
    const QDir installed(QStringLiteral("/usr/share/dbus-1/services"));
    const QStringList names = installed.entryList({QStringLiteral("*.service")}, QDir::Files);
    for (const QString &name : names) {
        const bool isOfKeyring = name.contains(QStringLiteral("keyring")) || name.contains(QStringLiteral("ecret"));
        const bool isTheKeyring = name == QStringLiteral("org.freedesktop.secrets.service");
        if (!isOfKeyring || (isTheKeyring && activation == KeyringActivation::yes)) {
            QFile::link(installed.filePath(name), target.filePath(name));
        }
    }
}

/// Managers announce themselves early in their start-up, and a window that is mapped right then can get lost. So one is
/// put before it until it takes it.
bool managesWindows(const XConnection &connection)
{
    constexpr std::chrono::milliseconds patience{200};
    xcb_connection_t *xcb = connection.get();
    const qsizetype windowsBefore = windowsOnScreen(connection).size();
    const xcb_window_t probe = xcb_generate_id(xcb);
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, probe, connection.root(), 0, 0, 10, 10, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(xcb, probe);
    const bool managed = waitFor([&] { return connection.hasProperty(probe, "WM_STATE"); }, patience);
    xcb_destroy_window(xcb, probe);
    // Frames go after the window; the next window must not find this one's.
    return managed && waitFor([&] { return windowsOnScreen(connection).size() == windowsBefore; }, patience);
}

} // namespace

SessionBus::SessionBus(QProcessEnvironment environment, KeyringActivation activation)
{
    const QString services = m_folder.filePath(QStringLiteral("services"));
    linkServices(services, activation);
    const QString configuration = m_folder.filePath(QStringLiteral("bus.conf"));
    writeFile(configuration, QByteArray(busConfiguration).replace("SERVICES", services.toUtf8()));
    int pipe[2];
    if (::pipe2(pipe, O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe for dbus-daemon");
    }
    m_process = std::make_unique<Process>(ProcessOptions{
        .program = QStringLiteral("dbus-daemon"),
        .arguments = {QStringLiteral("--config-file=") + configuration, QStringLiteral("--nofork"),
                      QStringLiteral("--nopidfile"), QStringLiteral("--print-address=%1").arg(pipe[1])},
        .environment = environment,
        .inheritedDescriptors = {pipe[1]},
    });
    ::close(pipe[1]);
    m_address = QString::fromLatin1(readLine(pipe[0]));
    ::close(pipe[0]);
    if (m_address.isEmpty()) {
        throw std::runtime_error("dbus-daemon did not start");
    }
}

void SessionBus::applyTo(QProcessEnvironment &environment) const
{
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_address);
}

WindowManager::WindowManager(XServer &server, WindowManagerKind kind)
    : WindowManager(server, kind, server.clientEnvironment())
{
}

WindowManager::WindowManager(XServer &server, WindowManagerKind kind, QProcessEnvironment environment)
    : m_server(server), m_kind(kind)
{
    if (kind == WindowManagerKind::none) {
        return;
    }
    m_folders.applyTo(environment);
    if (environment.value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")) == noSessionBus) {
        m_bus = std::make_unique<SessionBus>(environment);
        m_bus->applyTo(environment);
    }
    ProcessOptions options = program(kind, m_folders);
    options.environment = environment;
    options.logFile = m_folders.path("window-manager.log");
    m_process = std::make_unique<Process>(options);
    const XConnection &connection = server.connection();
    waitUntil("the window manager", [&] {
        if (!m_process->isRunning()) {
            throw std::runtime_error("the window manager ended: " + m_process->log().toStdString());
        }
        const QList<quint32> check = connection.cardinals(connection.root(), "_NET_SUPPORTING_WM_CHECK");
        return !check.isEmpty() && !connection.property(check.first(), "_NET_WM_NAME").isEmpty();
    });
    waitUntil("the window manager to manage windows", [&] { return managesWindows(connection); });
}

void WindowManager::showWorkspace(quint32 number)
{
    const XConnection &connection = m_server.connection();
    connection.sendToRoot(connection.root(), "_NET_CURRENT_DESKTOP", {number, XCB_CURRENT_TIME});
    waitUntil("the other workspace", [&] {
        return connection.cardinals(connection.root(), "_NET_CURRENT_DESKTOP") == QList<quint32>{number};
    });
}

Compositor::Compositor(XServer &server, CompositorKind kind)
    : Compositor(server, kind == CompositorKind::none    ? QByteArray()
                         : kind == CompositorKind::plain ? plainCompositor
                                                         : fadingCompositor)
{
}

Compositor::Compositor(XServer &server, const QByteArray &configuration)
{
    if (configuration.isEmpty()) {
        return;
    }
    const QString file = m_folder.filePath(QStringLiteral("picom.conf"));
    writeFile(file, configuration);
    m_process = std::make_unique<Process>(ProcessOptions{
        .program = QStringLiteral("picom"),
        .arguments = {QStringLiteral("--config"), file},
        .environment = server.clientEnvironment(),
        .logFile = m_folder.filePath(QStringLiteral("picom.log")),
    });
    const XConnection &connection = server.connection();
    const xcb_atom_t selection = connection.atom("_NET_WM_CM_S0");
    waitUntil("the compositor", [&] {
        if (!m_process->isRunning()) {
            throw std::runtime_error("the compositor ended: " + m_process->log().toStdString());
        }
        const Reply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
            connection.get(), xcb_get_selection_owner(connection.get(), selection), nullptr));
        return owner && owner->owner != XCB_NONE;
    });
}

} // namespace lumenfold::test
