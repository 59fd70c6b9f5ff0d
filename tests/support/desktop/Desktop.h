#pragma once

#include "tests/support/desktop/Clipboard.h"
#include "tests/support/desktop/Input.h"
#include "tests/support/desktop/KeyringDaemon.h"
#include "tests/support/desktop/Pictures.h"
#include "tests/support/desktop/PrivateFolders.h"
#include "tests/support/desktop/Process.h"
#include "tests/support/desktop/Session.h"
#include "tests/support/desktop/TestWindow.h"
#include "tests/support/desktop/Wait.h"
#include "tests/support/desktop/Windows.h"
#include "tests/support/desktop/XServer.h"

#include <QImage>

#include <memory>
#include <string_view>
#include <vector>

/// A whole desktop that belongs to one test: X server, window manager, compositor, session bus, private folders, and
/// the shipped program in it. What it tells is what another program on that desktop sees.
///
/// Places are root pixels, origin top left, unless a name says points.
namespace lumenfold::test {

/// What the desktop has to keep passwords in.
enum class KeyringKind {
    none,
    empty,
    /// With an API key of LumenFold's in it, so that nobody is asked for one.
    withApiKey,
};

struct DesktopOptions {
    /// Of the whole server, in pixels.
    QSize size{1280, 800};
    /// Device pixels per point.
    int scale = 1;
    WindowManagerKind windowManager = WindowManagerKind::openbox;
    CompositorKind compositor = CompositorKind::none;
    KeyringKind keyring = KeyringKind::withApiKey;
    /// Asked for once the keyring has been locked; without one, unlocking asks nobody.
    std::optional<QByteArray> keyringPassword{};
    /// Several screens in place of one.
    QList<Monitor> monitors{};
    /// Added to the program's environment.
    QProcessEnvironment environment{};
};

class Desktop {
public:
    /// The desktop stands when the constructor returns; the program is not started yet.
    explicit Desktop(const DesktopOptions &options = {});
    ~Desktop();
    Desktop(const Desktop &) = delete;
    Desktop &operator=(const Desktop &) = delete;

    /// Starts LumenFold and returns when its hotkeys are bound. Throws std::runtime_error with its log when it ends
    /// first.
    void startProgram();
    /// Asks it to end (SIGTERM), waits, and tells how it went. The clipboard and the folders stay as they are.
    Process::Exit quitProgram();
    /// A second process of the same binary in the same session.
    [[nodiscard]] std::unique_ptr<Process> startSecondProgram();
    [[nodiscard]] bool isProgramRunning();
    [[nodiscard]] Process &program() { return *m_program; }
    /// All that it wrote since the desktop was made, of every start.
    [[nodiscard]] QByteArray programLog() const;

    [[nodiscard]] XServer &server() { return *m_server; }
    [[nodiscard]] const XConnection &connection() const { return m_server->connection(); }
    [[nodiscard]] Keyboard &keyboard() { return *m_keyboard; }
    [[nodiscard]] Pointer &pointer() { return *m_pointer; }
    [[nodiscard]] WindowManager &windowManager() { return *m_windowManager; }
    /// Only where the options ask for one.
    [[nodiscard]] KeyringDaemon &keyring() { return *m_keyring; }
    [[nodiscard]] const PrivateFolders &folders() const { return m_folders; }
    /// Environment for further programs of this session.
    [[nodiscard]] QProcessEnvironment environment() const { return m_environment; }

    /// "Super+Alt+1".
    void press(std::string_view keys) { m_keyboard->press(keys); }
    /// True when some client holds a grab on this combination, so that it would not reach the focused window.
    [[nodiscard]] bool isGrabbed(xcb_keycode_t key, std::uint16_t modifiers) const;

    /// What the user sees now.
    [[nodiscard]] QImage picture(QRect part = {}) const { return rootPicture(connection(), part); }
    /// Returns the picture once it has stopped changing.
    QImage waitForStillPicture();
    /// Paints the background, and returns the picture that then stands on the screen.
    QImage paintBackground(const QImage &picture);
    /// Another program's window; it stays until the desktop goes or `closeWindow`.
    TestWindow &openWindow(const TestWindowOptions &options = {});
    void closeWindow(TestWindow &window);
    /// The part of the screen that no panel has reserved, as the window manager says; the whole screen without one.
    [[nodiscard]] QRect workArea() const;

    [[nodiscard]] ClipboardReader &clipboard() { return *m_clipboard; }
    /// Empty when the clipboard has no PNG.
    [[nodiscard]] QByteArray clipboardPng();
    /// The clipboard's PNG, decoded; null when there is none.
    [[nodiscard]] QImage clipboardPicture();
    /// Returns when the clipboard has been taken again, counted from the last call (or the start).
    void waitForClipboard();

    /// The program's windows on the screen that the window manager knows nothing of, lowest first: cards, pills,
    /// overlays.
    [[nodiscard]] QList<WindowInfo> panels() const;
    /// All of its windows, managed or not, lowest first.
    [[nodiscard]] QList<WindowInfo> windowsOfProgram() const;
    /// Returns when there are exactly as many panels and none has moved for a moment.
    QList<WindowInfo> waitForPanels(int count);

    /// True when a program holds the whole keyboard.
    [[nodiscard]] bool isKeyboardHeld() const;
    /// Returns when the program's windows that cover whole screens are exactly these (root pixels) and, if there are
    /// any, the program gets the keys.
    void waitForOverlays(const QList<QRect> &frames);
    /// Another one in place of the present one.
    void setCompositor(CompositorKind kind);

    /// Writes the screen, the clipboard and every log into a folder, for people to look at.
    void keepEvidence(const QString &folder);

private:
    PrivateFolders m_folders;
    std::unique_ptr<XServer> m_server;
    QProcessEnvironment m_environment;
    std::unique_ptr<SessionBus> m_bus;
    std::unique_ptr<KeyringDaemon> m_keyring;
    std::unique_ptr<WindowManager> m_windowManager;
    std::unique_ptr<Compositor> m_compositor;
    std::unique_ptr<Keyboard> m_keyboard;
    std::unique_ptr<Pointer> m_pointer;
    std::unique_ptr<ClipboardReader> m_clipboard;
    int m_clipboardChangesSeen = 0;
    std::vector<std::unique_ptr<TestWindow>> m_windows;
    std::unique_ptr<Process> m_program;
};

/// The program that the desktop tests drive: LUMENFOLD_BINARY, or else the release build of this tree.
[[nodiscard]] QString programPath();

} // namespace lumenfold::test
