#include "tests/support/desktop/TestWindow.h"

#include "tests/support/desktop/Pictures.h"

#include <unistd.h>

namespace lumenfold::test {
namespace {

constexpr quint32 fromApplication = 1;
constexpr quint32 removeState = 0;
constexpr quint32 addState = 1;

const char *typeName(WindowKind kind)
{
    switch (kind) {
    case WindowKind::dock:
        return "_NET_WM_WINDOW_TYPE_DOCK";
    case WindowKind::desktop:
        return "_NET_WM_WINDOW_TYPE_DESKTOP";
    case WindowKind::normal:
    case WindowKind::overrideRedirect:
        break;
    }
    return "_NET_WM_WINDOW_TYPE_NORMAL";
}

/// WM_NORMAL_HINTS: place and size chosen by the user, so that the window manager keeps them.
QList<quint32> userPlacement(QRect frame)
{
    constexpr quint32 userPosition = 1;
    constexpr quint32 userSize = 2;
    QList<quint32> hints(18, 0);
    hints[0] = userPosition | userSize;
    hints[1] = static_cast<quint32>(frame.x());
    hints[2] = static_cast<quint32>(frame.y());
    hints[3] = static_cast<quint32>(frame.width());
    hints[4] = static_cast<quint32>(frame.height());
    return hints;
}

} // namespace

TestWindow::TestWindow(XServer &server, const TestWindowOptions &options)
    : m_server(server), m_connection(server.display())
{
    xcb_connection_t *xcb = m_connection.get();
    const QRect frame = options.frame;
    m_window = xcb_generate_id(xcb);
    const std::uint32_t values[] = {
        options.kind == WindowKind::overrideRedirect ? 1U : 0U,
        XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_FOCUS_CHANGE,
    };
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, m_window, m_connection.root(), static_cast<std::int16_t>(frame.x()),
                      static_cast<std::int16_t>(frame.y()), static_cast<std::uint16_t>(frame.width()),
                      static_cast<std::uint16_t>(frame.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    m_connection.setProperty(m_window, "_NET_WM_NAME", "UTF8_STRING", options.title.toUtf8());
    m_connection.setProperty(m_window, "WM_NAME", "STRING", options.title.toLatin1());
    m_connection.setProperty(m_window, "WM_CLASS", "STRING", QByteArray("test-window\0TestWindow\0", 23));
    m_connection.setCardinals(m_window, "_NET_WM_PID", "CARDINAL",
                              {static_cast<quint32>(options.pid.value_or(::getpid()))});
    m_connection.setCardinals(m_window, "_NET_WM_WINDOW_TYPE", "ATOM", {m_connection.atom(typeName(options.kind))});
    m_connection.setCardinals(m_window, "WM_NORMAL_HINTS", "WM_SIZE_HINTS", userPlacement(frame));
    m_connection.setCardinals(m_window, "WM_PROTOCOLS", "ATOM", {m_connection.atom("WM_DELETE_WINDOW")});
    if (options.decoration == Decoration::none) {
        constexpr quint32 decorationsAreSet = 2;
        m_connection.setCardinals(m_window, "_MOTIF_WM_HINTS", "_MOTIF_WM_HINTS", {decorationsAreSet, 0, 0, 0, 0});
    }
    if (options.fullScreen == FullScreen::yes) {
        m_connection.setCardinals(m_window, "_NET_WM_STATE", "ATOM", {m_connection.atom("_NET_WM_STATE_FULLSCREEN")});
    }
    if (!options.strut.isEmpty()) {
        m_connection.setCardinals(m_window, "_NET_WM_STRUT", "CARDINAL", options.strut);
    }
    setPicture(options.picture.isNull() ? knownPicture(frame.size(), 1) : options.picture);
    xcb_map_window(xcb, m_window);
    m_connection.sync();
    waitUntil("the test window to appear", [this] {
        const Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
            m_connection.get(), xcb_get_window_attributes(m_connection.get(), m_window), nullptr));
        return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    });
}

TestWindow::~TestWindow() = default;

QRect TestWindow::frame() const
{
    return m_connection.frameOf(m_window);
}

void TestWindow::setPicture(const QImage &picture)
{
    m_picture = picture;
    const xcb_pixmap_t pixmap = pixmapOf(m_connection, picture);
    xcb_change_window_attributes(m_connection.get(), m_window, XCB_CW_BACK_PIXMAP, &pixmap);
    xcb_clear_area(m_connection.get(), 0, m_window, 0, 0, 0, 0);
    xcb_free_pixmap(m_connection.get(), pixmap);
    m_connection.sync();
}

void TestWindow::focus()
{
    waitUntil("the test window to have the keyboard", [this] {
        if (hasFocus()) {
            return true;
        }
        m_connection.sendToRoot(m_window, "_NET_ACTIVE_WINDOW", {fromApplication, XCB_CURRENT_TIME, 0});
        if (m_server.connection().property(m_server.connection().root(), "_NET_SUPPORTING_WM_CHECK").isEmpty()) {
            xcb_set_input_focus(m_connection.get(), XCB_INPUT_FOCUS_PARENT, m_window, XCB_CURRENT_TIME);
            m_connection.sync();
        }
        return false;
    });
}

bool TestWindow::hasFocus() const
{
    return m_connection.focusedWindow() == m_window;
}

void TestWindow::setFullScreen(FullScreen fullScreen)
{
    const QRect before = frame();
    m_connection.sendToRoot(m_window, "_NET_WM_STATE",
                            {fullScreen == FullScreen::yes ? addState : removeState,
                             m_connection.atom("_NET_WM_STATE_FULLSCREEN"), 0, fromApplication});
    waitUntil("the test window to change its size", [&] { return frame() != before; });
}

void TestWindow::raise()
{
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(m_connection.get(), m_window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    m_connection.sync();
}

void TestWindow::moveTo(QPoint place)
{
    const std::uint32_t values[] = {static_cast<std::uint32_t>(place.x()), static_cast<std::uint32_t>(place.y())};
    xcb_configure_window(m_connection.get(), m_window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, values);
    waitUntil("the test window to move", [&] { return frame().topLeft() == place; });
}

void TestWindow::resize(QSize size)
{
    const std::uint32_t values[] = {static_cast<std::uint32_t>(size.width()),
                                    static_cast<std::uint32_t>(size.height())};
    xcb_configure_window(m_connection.get(), m_window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values);
    waitUntil("the test window to change its size", [&] { return frame().size() == size; });
}

QList<TestWindow::KeyPress> TestWindow::keyPresses()
{
    readEvents();
    return m_keyPresses;
}

QList<TestWindow::ButtonPress> TestWindow::buttonPresses()
{
    readEvents();
    return m_buttonPresses;
}

int TestWindow::focusLosses()
{
    readEvents();
    return m_focusLosses;
}

void TestWindow::forgetInput()
{
    readEvents();
    m_keyPresses.clear();
    m_buttonPresses.clear();
    m_focusLosses = 0;
}

void TestWindow::readEvents()
{
    m_connection.sync();
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        switch (event->response_type & 0x7f) {
        case XCB_KEY_PRESS: {
            const auto *press = reinterpret_cast<const xcb_key_press_event_t *>(event.get());
            m_keyPresses.append({.code = press->detail, .state = press->state});
            break;
        }
        case XCB_BUTTON_PRESS: {
            const auto *press = reinterpret_cast<const xcb_button_press_event_t *>(event.get());
            m_buttonPresses.append({.button = press->detail, .place = {press->event_x, press->event_y}});
            break;
        }
        case XCB_FOCUS_OUT: {
            const auto *change = reinterpret_cast<const xcb_focus_out_event_t *>(event.get());
            if (change->mode == XCB_NOTIFY_MODE_NORMAL && change->detail != XCB_NOTIFY_DETAIL_POINTER) {
                ++m_focusLosses;
            }
            break;
        }
        default:
            break;
        }
    }
}

} // namespace lumenfold::test
