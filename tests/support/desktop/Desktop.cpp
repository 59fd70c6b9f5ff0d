#include "tests/support/desktop/Desktop.h"

#include <QBuffer>
#include <QDir>
#include <QFile>

#include <algorithm>
#include <csignal>
#include <stdexcept>

namespace lumenfold::test {
namespace {

/// How long windows must stand still before they count as arrived; longer than a frame of the slowest animation.
constexpr std::chrono::milliseconds stillness{120};

void copyOver(const QString &from, const QString &to)
{
    QFile::remove(to);
    QFile::copy(from, to);
}

} // namespace

QString programPath()
{
    const QString chosen = qEnvironmentVariable("LUMENFOLD_BINARY");
    return chosen.isEmpty() ? QStringLiteral(LUMENFOLD_RELEASE_BINARY) : chosen;
}

Desktop::Desktop(const DesktopOptions &options)
{
    m_server = std::make_unique<XServer>(XServerOptions{.size = options.size, .scale = options.scale});
    if (!options.monitors.isEmpty()) {
        m_server->setMonitors(options.monitors);
    }
    m_environment = m_server->clientEnvironment();
    m_folders.applyTo(m_environment);
    m_bus = std::make_unique<SessionBus>(m_environment);
    m_bus->applyTo(m_environment);
    if (options.keyring != KeyringKind::none) {
        const bool hasKey = options.keyring == KeyringKind::withApiKey;
        m_keyring = std::make_unique<KeyringDaemon>(
            m_bus->address(),
            KeyringDaemonOptions{.apiKey = hasKey ? std::optional(QByteArray("demo-key")) : std::nullopt,
                                 .password = options.keyringPassword});
    }
    m_windowManager = std::make_unique<WindowManager>(*m_server, options.windowManager, m_environment);
    m_compositor = std::make_unique<Compositor>(*m_server, options.compositor);
    m_environment.insert(options.environment);
    m_keyboard = std::make_unique<Keyboard>(m_server->display());
    m_pointer = std::make_unique<Pointer>(m_server->display());
    m_clipboard = std::make_unique<ClipboardReader>(m_server->display());
}

Desktop::~Desktop() = default;

void Desktop::startProgram()
{
    m_program.reset();
    m_program = std::make_unique<Process>(ProcessOptions{
        .program = programPath(),
        .environment = m_environment,
        .logFile = m_folders.path("lumenfold.log"),
    });
    const xcb_keycode_t one = m_keyboard->codeOf("1");
    const xcb_keycode_t three = m_keyboard->codeOf("3");
    constexpr std::uint16_t superAlt = XCB_MOD_MASK_4 | XCB_MOD_MASK_1;
    waitUntil(
        "LumenFold's hotkeys",
        [&] {
            if (!m_program->isRunning()) {
                throw std::runtime_error("LumenFold ended: " + programLog().toStdString());
            }
            return isGrabbed(one, superAlt) && isGrabbed(three, superAlt);
        },
        std::chrono::seconds(30));
    // An earlier run let go of the clipboard when it ended.
    m_clipboardChangesSeen = m_clipboard->ownerChanges();
}

Process::Exit Desktop::quitProgram()
{
    m_program->sendSignal(SIGTERM);
    const std::optional<Process::Exit> exit = m_program->waitForExit();
    if (!exit) {
        throw std::runtime_error("LumenFold did not end: " + programLog().toStdString());
    }
    return *exit;
}

std::unique_ptr<Process> Desktop::startSecondProgram()
{
    return std::make_unique<Process>(ProcessOptions{
        .program = programPath(),
        .environment = m_environment,
        .logFile = m_folders.path("second.log"),
    });
}

bool Desktop::isProgramRunning()
{
    return m_program && m_program->isRunning();
}

QByteArray Desktop::programLog() const
{
    return Process::logAt(m_folders.path("lumenfold.log"));
}

bool Desktop::isGrabbed(xcb_keycode_t key, std::uint16_t modifiers) const
{
    // The only question the protocol knows is to try. The server is held meanwhile, so that the attempt can never take
    // the key from a program that is just about to.
    xcb_connection_t *xcb = connection().get();
    xcb_grab_server(xcb);
    const Reply<xcb_generic_error_t> refused(
        xcb_request_check(xcb, xcb_grab_key_checked(xcb, 0, connection().root(), modifiers, key, XCB_GRAB_MODE_ASYNC,
                                                    XCB_GRAB_MODE_ASYNC)));
    if (!refused) {
        xcb_ungrab_key(xcb, key, connection().root(), modifiers);
    }
    xcb_ungrab_server(xcb);
    connection().sync();
    return refused != nullptr;
}

QImage Desktop::waitForStillPicture()
{
    QImage now = picture();
    auto unchangedSince = std::chrono::steady_clock::now();
    waitUntil("the screen to stand still", [&] {
        const QImage latest = picture();
        if (differingPixels(latest, now) != 0) {
            now = latest;
            unchangedSince = std::chrono::steady_clock::now();
        }
        return std::chrono::steady_clock::now() - unchangedSince >= stillness;
    });
    return now;
}

QImage Desktop::paintBackground(const QImage &picture)
{
    m_server->paintRoot(picture);
    waitUntil("the background", [&] { return differingPixels(this->picture(), picture) == 0; });
    return picture;
}

TestWindow &Desktop::openWindow(const TestWindowOptions &options)
{
    m_windows.push_back(std::make_unique<TestWindow>(*m_server, options));
    return *m_windows.back();
}

void Desktop::closeWindow(TestWindow &window)
{
    std::erase_if(m_windows, [&window](const auto &candidate) { return candidate.get() == &window; });
}

QRect Desktop::workArea() const
{
    const QList<quint32> values = connection().cardinals(connection().root(), "_NET_WORKAREA");
    if (values.size() < 4) {
        return {QPoint(0, 0), m_server->size()};
    }
    return {static_cast<int>(values[0]), static_cast<int>(values[1]), static_cast<int>(values[2]),
            static_cast<int>(values[3])};
}

QByteArray Desktop::clipboardPng()
{
    return m_clipboard->read("image/png").value_or(QByteArray());
}

QImage Desktop::clipboardPicture()
{
    return QImage::fromData(clipboardPng(), "PNG");
}

void Desktop::waitForClipboard()
{
    waitUntil("the clipboard to be taken", [this] { return m_clipboard->ownerChanges() > m_clipboardChangesSeen; });
    m_clipboardChangesSeen = m_clipboard->ownerChanges();
}

QList<WindowInfo> Desktop::windowsOfProgram() const
{
    return m_program ? windowsOf(connection(), m_program->pid()) : QList<WindowInfo>();
}

QList<WindowInfo> Desktop::panels() const
{
    QList<WindowInfo> windows = windowsOfProgram();
    windows.removeIf([](const WindowInfo &window) { return !window.overrideRedirect; });
    return windows;
}

QList<WindowInfo> Desktop::waitForPanels(int count)
{
    QList<WindowInfo> now = panels();
    auto unchangedSince = std::chrono::steady_clock::now();
    waitUntil(std::to_string(count) + " panels", [&] {
        const QList<WindowInfo> latest = panels();
        if (latest != now) {
            now = latest;
            unchangedSince = std::chrono::steady_clock::now();
        }
        return now.size() == count && std::chrono::steady_clock::now() - unchangedSince >= stillness;
    });
    return now;
}

bool Desktop::isKeyboardHeld() const
{
    // As in isGrabbed.
    xcb_connection_t *xcb = connection().get();
    xcb_grab_server(xcb);
    const Reply<xcb_grab_keyboard_reply_t> attempt(xcb_grab_keyboard_reply(
        xcb, xcb_grab_keyboard(xcb, 0, connection().root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
        nullptr));
    const bool held = attempt && attempt->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
    if (attempt && attempt->status == XCB_GRAB_STATUS_SUCCESS) {
        xcb_ungrab_keyboard(xcb, XCB_CURRENT_TIME);
    }
    xcb_ungrab_server(xcb);
    connection().sync();
    return held;
}

void Desktop::waitForOverlays(const QList<QRect> &frames)
{
    constexpr QSize smallerThanAnyScreen(600, 600);
    waitUntil("the overlays", [&] {
        QList<QRect> found;
        const QList<WindowInfo> windows = windowsOfProgram();
        for (const WindowInfo &window : windows) {
            if (window.frame.width() >= smallerThanAnyScreen.width() &&
                window.frame.height() >= smallerThanAnyScreen.height()) {
                found.append(window.frame);
            }
        }
        return found.size() == frames.size() &&
               std::all_of(frames.begin(), frames.end(), [&](const QRect &frame) { return found.contains(frame); });
    });
    waitUntil("the selection to have the keyboard", [&] {
        return frames.isEmpty() || isKeyboardHeld() ||
               processOf(connection(), connection().focusedWindow()) == m_program->pid();
    });
}

void Desktop::setCompositor(CompositorKind kind)
{
    m_compositor.reset();
    m_compositor = std::make_unique<Compositor>(*m_server, kind);
}

void Desktop::keepEvidence(const QString &folder)
{
    QDir().mkpath(folder);
    const QDir target(folder);
    picture().save(target.filePath(QStringLiteral("screen.png")));
    if (const QByteArray png = m_clipboard->read("image/png", std::chrono::seconds(2)).value_or(QByteArray());
        !png.isEmpty()) {
        QFile file(target.filePath(QStringLiteral("clipboard.png")));
        if (file.open(QIODevice::WriteOnly)) {
            file.write(png);
        }
    }
    for (const char *log : {"lumenfold.log", "second.log"}) {
        copyOver(m_folders.path(log), target.filePath(QString::fromLatin1(log)));
    }
    QFile list(target.filePath(QStringLiteral("windows.txt")));
    if (list.open(QIODevice::WriteOnly)) {
        const QList<WindowInfo> windows = windowsOnScreen(connection());
        for (const WindowInfo &window : windows) {
            list.write(QStringLiteral("%1 pid %2 %3x%4+%5+%6 %7 \"%8\"\n")
                           .arg(window.id, 0, 16)
                           .arg(window.pid)
                           .arg(window.frame.width())
                           .arg(window.frame.height())
                           .arg(window.frame.x())
                           .arg(window.frame.y())
                           .arg(window.overrideRedirect ? QStringLiteral("panel") : QStringLiteral("managed"))
                           .arg(window.title)
                           .toUtf8());
        }
    }
}

} // namespace lumenfold::test
