#pragma once

#include "tests/support/desktop/PrivateFolders.h"
#include "tests/support/desktop/Process.h"
#include "tests/support/desktop/XServer.h"

#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <memory>

/// The other programs of a desktop session, each with folders of its own and gone with its object.
namespace lumenfold::test {

/// Whether the bus starts a keyring when somebody asks for one. Other services that are installed it always starts.
enum class KeyringActivation { no, yes };

/// A D-Bus session bus that nothing else is on.
class SessionBus {
public:
    explicit SessionBus(QProcessEnvironment environment = QProcessEnvironment::systemEnvironment(),
                        KeyringActivation activation = KeyringActivation::no);

    [[nodiscard]] QString address() const { return m_address; }
    void applyTo(QProcessEnvironment &environment) const;

private:
    QTemporaryDir m_folder;
    std::unique_ptr<Process> m_process;
    QString m_address;
};

enum class WindowManagerKind { none, openbox, xfwm4, i3 };

/// Ready (it has announced itself on the root window) when the constructor returns.
class WindowManager {
public:
    /// With `none` nothing is started.
    WindowManager(XServer &server, WindowManagerKind kind);
    WindowManager(XServer &server, WindowManagerKind kind, QProcessEnvironment environment);

    [[nodiscard]] WindowManagerKind kind() const { return m_kind; }
    /// Counts from 0; returns when the window manager has changed to it.
    void showWorkspace(quint32 number);

private:
    PrivateFolders m_folders;
    XServer &m_server;
    WindowManagerKind m_kind;
    /// Only where the session has none: without one some window managers start a bus that outlives them.
    std::unique_ptr<SessionBus> m_bus;
    std::unique_ptr<Process> m_process;
};

enum class CompositorKind {
    none,
    /// Blends windows and does nothing else.
    plain,
    /// Fades windows in and out, and draws shadows, as people's desktops do.
    fading,
};

/// Ready (it owns the compositing selection) when the constructor returns.
class Compositor {
public:
    /// With `none` nothing is started.
    Compositor(XServer &server, CompositorKind kind);
    /// picom with a configuration of the test's own.
    Compositor(XServer &server, const QByteArray &configuration);

private:
    QTemporaryDir m_folder;
    std::unique_ptr<Process> m_process;
};

} // namespace lumenfold::test
