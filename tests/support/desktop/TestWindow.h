#pragma once

#include "tests/support/desktop/XServer.h"

#include <QImage>
#include <QList>
#include <QPoint>
#include <QString>

#include <sys/types.h>

#include <optional>

namespace lumenfold::test {

enum class WindowKind { normal, dock, desktop, overrideRedirect };
enum class Decoration { none, ofTheWindowManager };
enum class FullScreen { no, yes };

struct TestWindowOptions {
    /// Root pixels, origin top left.
    QRect frame{100, 100, 400, 300};
    QString title = QStringLiteral("Test window");
    /// Stands in the window's upper left corner; a known picture of the window's size when it is null.
    QImage picture{};
    WindowKind kind = WindowKind::normal;
    Decoration decoration = Decoration::none;
    FullScreen fullScreen = FullScreen::no;
    /// Room that a dock reserves at the screen's left, right, top and bottom edge, in pixels.
    QList<quint32> strut{};
    /// What _NET_WM_PID says; the test's own by default.
    std::optional<pid_t> pid{};
};

/// A window of another program: it has a connection of its own, shows a known picture, and remembers the keys and
/// buttons that reach it. The server itself repaints it, so it is never blank while the test is busy.
class TestWindow {
public:
    struct KeyPress {
        xcb_keycode_t code = 0;
        /// The modifiers held, as the core protocol's mask.
        std::uint16_t state = 0;
    };
    struct ButtonPress {
        std::uint8_t button = 0;
        /// In the window's pixels.
        QPoint place;
    };

    /// Returns when the window is on the screen.
    explicit TestWindow(XServer &server, const TestWindowOptions &options = {});
    ~TestWindow();
    TestWindow(const TestWindow &) = delete;
    TestWindow &operator=(const TestWindow &) = delete;

    [[nodiscard]] xcb_window_t id() const { return m_window; }
    /// The inside, in root pixels.
    [[nodiscard]] QRect frame() const;
    [[nodiscard]] const QImage &picture() const { return m_picture; }
    void setPicture(const QImage &picture);

    /// Gives it the keyboard and returns when it has it.
    void focus();
    [[nodiscard]] bool hasFocus() const;
    void setFullScreen(FullScreen fullScreen);
    void raise();
    void moveTo(QPoint place);
    void resize(QSize size);

    /// All that arrived since the window was made or `forgetInput` was called.
    [[nodiscard]] QList<KeyPress> keyPresses();
    [[nodiscard]] QList<ButtonPress> buttonPresses();
    /// How often the keyboard was taken from it, not counting grabs.
    [[nodiscard]] int focusLosses();
    void forgetInput();

private:
    void readEvents();

    XServer &m_server;
    XConnection m_connection;
    xcb_window_t m_window = XCB_NONE;
    QImage m_picture;
    QList<KeyPress> m_keyPresses;
    QList<ButtonPress> m_buttonPresses;
    int m_focusLosses = 0;
};

} // namespace lumenfold::test
