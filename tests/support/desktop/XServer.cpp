#include "tests/support/desktop/XServer.h"

#include "tests/support/desktop/Pictures.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/uio.h>
#include <unistd.h>
#include <xcb/randr.h>
#include <xcb/xcbext.h>

#include <stdexcept>

namespace lumenfold::test {
namespace {

/// The number that the server writes when it accepts connections. Empty when it ended or stayed silent.
QByteArray readDisplayNumber(int descriptor)
{
    QByteArray number;
    pollfd readable{.fd = descriptor, .events = POLLIN, .revents = 0};
    while (!number.endsWith('\n') && ::poll(&readable, 1, static_cast<int>(defaultTimeout.count())) > 0) {
        char byte = 0;
        if (::read(descriptor, &byte, 1) != 1) {
            return {};
        }
        number.append(byte);
    }
    return number.trimmed();
}

/// xcb 1.15's own function for this request gets its length wrong, so it is put together here.
void setMonitor(const XConnection &connection, const Monitor &monitor, xcb_randr_output_t output)
{
    struct {
        xcb_randr_set_monitor_request_t request;
        xcb_randr_monitor_info_t info;
        xcb_randr_output_t output;
    } message{};
    message.request.window = connection.root();
    message.info.name = connection.atom(monitor.name.constData());
    message.info.primary = monitor.primary ? 1 : 0;
    message.info.nOutput = output == XCB_NONE ? 0 : 1;
    message.info.x = static_cast<std::int16_t>(monitor.frame.x());
    message.info.y = static_cast<std::int16_t>(monitor.frame.y());
    message.info.width = static_cast<std::uint16_t>(monitor.frame.width());
    message.info.height = static_cast<std::uint16_t>(monitor.frame.height());
    // 96 dots per inch.
    message.info.width_in_millimeters = message.info.width * 254U / 960;
    message.info.height_in_millimeters = message.info.height * 254U / 960;
    message.output = output;

    // The library wants two free entries before the first part.
    iovec parts[3]{};
    parts[2].iov_base = &message;
    parts[2].iov_len = sizeof message - (output == XCB_NONE ? sizeof message.output : 0);
    const xcb_protocol_request_t protocol{
        .count = 1, .ext = &xcb_randr_id, .opcode = XCB_RANDR_SET_MONITOR, .isvoid = 1};
    const unsigned sequence = xcb_send_request(connection.get(), XCB_REQUEST_CHECKED, parts + 2, &protocol);
    const Reply<xcb_generic_error_t> error(xcb_request_check(connection.get(), {sequence}));
    if (error) {
        throw std::runtime_error("the server refused the monitor " + monitor.name.toStdString());
    }
}

} // namespace

XServer::XServer(const XServerOptions &options)
{
    int pipe[2];
    if (::pipe2(pipe, O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe for Xvfb");
    }
    const QString geometry = QStringLiteral("%1x%2x24").arg(options.size.width()).arg(options.size.height());
    m_process = std::make_unique<Process>(ProcessOptions{
        .program = QStringLiteral("Xvfb"),
        .arguments = QStringList{QStringLiteral("-displayfd"), QString::number(pipe[1]), QStringLiteral("-screen"),
                                 QStringLiteral("0"), geometry, QStringLiteral("-nolisten"), QStringLiteral("tcp"),
                                 QStringLiteral("-noreset")} +
                     options.extraArguments,
        .logFile = m_folder.filePath(QStringLiteral("xvfb.log")),
        .inheritedDescriptors = {pipe[1]},
    });
    ::close(pipe[1]);
    const QByteArray number = readDisplayNumber(pipe[0]);
    ::close(pipe[0]);
    if (number.isEmpty()) {
        throw std::runtime_error("Xvfb did not start: " + m_process->log().toStdString());
    }
    m_display = ":" + number;
    m_connection = std::make_unique<XConnection>(m_display);
    setScale(options.scale);
}

XServer::~XServer() = default;

pid_t XServer::pid() const
{
    return m_process->pid();
}

QSize XServer::size() const
{
    return m_connection->frameOf(m_connection->root()).size();
}

QProcessEnvironment XServer::clientEnvironment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"WAYLAND_DISPLAY", "XAUTHORITY", "XDG_CURRENT_DESKTOP", "XDG_SESSION_TYPE",
                             "DESKTOP_SESSION", "SESSION_MANAGER", "QT_SCALE_FACTOR"}) {
        environment.remove(QString::fromLatin1(name));
    }
    environment.insert(QStringLiteral("DISPLAY"), QString::fromLatin1(m_display));
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), noSessionBus);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    // Sanitizers' and coverage settings stay; a message box of the accessibility bus does not belong here.
    environment.insert(QStringLiteral("NO_AT_BRIDGE"), QStringLiteral("1"));
    return environment;
}

void XServer::setScale(int scale)
{
    const QByteArray resources = "Xft.dpi:\t" + QByteArray::number(96 * scale) + '\n';
    m_connection->setProperty(m_connection->root(), "RESOURCE_MANAGER", "STRING", resources);
    m_connection->sync();
}

void XServer::setMonitors(const QList<Monitor> &monitors)
{
    xcb_connection_t *connection = m_connection->get();
    const Reply<xcb_randr_get_screen_resources_current_reply_t> resources(xcb_randr_get_screen_resources_current_reply(
        connection, xcb_randr_get_screen_resources_current(connection, m_connection->root()), nullptr));
    const int outputCount = resources ? xcb_randr_get_screen_resources_current_outputs_length(resources.get()) : 0;

    for (const QByteArray &name : m_monitorNames) {
        xcb_randr_delete_monitor(connection, m_connection->root(), m_connection->atom(name.constData()));
    }
    m_monitorNames.clear();
    for (qsizetype i = 0; i < monitors.size(); ++i) {
        const Monitor &monitor = monitors[i];
        // The server's one output goes to the first, so that the server makes no monitor of its own for it.
        setMonitor(*m_connection, monitor,
                   i == 0 && outputCount > 0 ? xcb_randr_get_screen_resources_current_outputs(resources.get())[0]
                                             : xcb_randr_output_t{XCB_NONE});
        m_monitorNames.append(monitor.name);
    }
    m_connection->sync();
}

void XServer::paintRoot(const QImage &picture)
{
    xcb_connection_t *connection = m_connection->get();
    const xcb_window_t root = m_connection->root();
    const xcb_pixmap_t previous = m_background;
    m_background = pixmapOf(*m_connection, picture);
    xcb_change_window_attributes(connection, root, XCB_CW_BACK_PIXMAP, &m_background);
    m_connection->setCardinals(root, "_XROOTPMAP_ID", "PIXMAP", {m_background});
    m_connection->setCardinals(root, "ESETROOT_PMAP_ID", "PIXMAP", {m_background});
    xcb_clear_area(connection, 1, root, 0, 0, 0, 0);
    if (previous != XCB_NONE) {
        xcb_free_pixmap(connection, previous);
    }
    m_connection->sync();
}

} // namespace lumenfold::test
