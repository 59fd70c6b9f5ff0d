#pragma once

#include "tests/support/desktop/Process.h"
#include "tests/support/desktop/XConnection.h"

#include <QImage>
#include <QProcessEnvironment>
#include <QSize>
#include <QTemporaryDir>

#include <memory>

namespace lumenfold::test {

/// One screen of several on the same server; pixels, origin top left.
struct Monitor {
    QByteArray name;
    QRect frame;
    bool primary = false;
};

/// An address of a session bus that is none. Where the variable is missing altogether, libraries start a bus of their
/// own, which outlives the test.
inline constexpr QLatin1StringView noSessionBus{"disabled:"};

struct XServerOptions {
    /// Of the whole server, in pixels.
    QSize size{1280, 800};
    /// Device pixels per point, told to programs by way of Xft.dpi (96 for each).
    int scale = 1;
    QStringList extraArguments{};
};

/// A virtual X server that belongs to the test: started on a free display, ready when the constructor returns, gone
/// with the object.
class XServer {
public:
    explicit XServer(const XServerOptions &options = {});
    ~XServer();
    XServer(const XServer &) = delete;
    XServer &operator=(const XServer &) = delete;

    /// For example ":7".
    [[nodiscard]] QByteArray display() const { return m_display; }
    [[nodiscard]] QSize size() const;
    [[nodiscard]] pid_t pid() const;
    /// The test's own connection, which nothing else uses.
    [[nodiscard]] XConnection &connection() const { return *m_connection; }
    /// The test's environment with this server as its display, and without the user's own session. There is no session
    /// bus in it (see SessionBus), and none gets started by itself.
    [[nodiscard]] QProcessEnvironment clientEnvironment() const;

    /// From now on the server has these screens instead of one; an empty list makes it one again.
    void setMonitors(const QList<Monitor> &monitors);
    void setScale(int scale);

    /// Paints the desktop background; compositors are told as well.
    void paintRoot(const QImage &picture);

private:
    QTemporaryDir m_folder;
    std::unique_ptr<Process> m_process;
    QByteArray m_display;
    std::unique_ptr<XConnection> m_connection;
    QList<QByteArray> m_monitorNames;
    xcb_pixmap_t m_background = XCB_NONE;
};

} // namespace lumenfold::test
