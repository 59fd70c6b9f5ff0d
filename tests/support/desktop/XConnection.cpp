#include "tests/support/desktop/XConnection.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace lumenfold::test {

XConnection::XConnection(const QByteArray &display)
{
    int screenNumber = 0;
    m_connection = xcb_connect(display.constData(), &screenNumber);
    if (xcb_connection_has_error(m_connection)) {
        xcb_disconnect(m_connection);
        throw std::runtime_error("no X server at " + display.toStdString());
    }
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(m_connection));
    for (int i = 0; i < screenNumber; ++i) {
        xcb_screen_next(&screens);
    }
    m_screen = screens.data;
}

XConnection::~XConnection()
{
    xcb_disconnect(m_connection);
}

xcb_atom_t XConnection::atom(const char *name) const
{
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        m_connection, xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name), nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

QString XConnection::atomName(xcb_atom_t atom) const
{
    const Reply<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(m_connection, xcb_get_atom_name(m_connection, atom), nullptr));
    return reply ? QString::fromLatin1(xcb_get_atom_name_name(reply.get()), xcb_get_atom_name_name_length(reply.get()))
                 : QString();
}

void XConnection::sync() const
{
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

bool XConnection::hasProperty(xcb_window_t window, const char *name) const
{
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        m_connection, xcb_get_property(m_connection, 0, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, 0), nullptr));
    return reply && reply->type != XCB_ATOM_NONE;
}

QByteArray XConnection::property(xcb_window_t window, const char *name) const
{
    constexpr std::uint32_t everything = 1u << 28;
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        m_connection, xcb_get_property(m_connection, 0, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, everything),
        nullptr));
    if (!reply) {
        return {};
    }
    return {static_cast<const char *>(xcb_get_property_value(reply.get())), xcb_get_property_value_length(reply.get())};
}

QList<quint32> XConnection::cardinals(xcb_window_t window, const char *name) const
{
    const QByteArray bytes = property(window, name);
    QList<quint32> values(bytes.size() / qsizetype(sizeof(quint32)));
    std::copy_n(bytes.constData(), values.size() * qsizetype(sizeof(quint32)), reinterpret_cast<char *>(values.data()));
    return values;
}

void XConnection::setProperty(xcb_window_t window, const char *name, const char *type, const QByteArray &bytes) const
{
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, atom(name), atom(type), 8,
                        static_cast<std::uint32_t>(bytes.size()), bytes.constData());
}

void XConnection::setCardinals(xcb_window_t window, const char *name, const char *type,
                               const QList<quint32> &values) const
{
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, atom(name), atom(type), 32,
                        static_cast<std::uint32_t>(values.size()), values.constData());
}

void XConnection::sendToRoot(xcb_window_t window, const char *message, const QList<quint32> &data) const
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(message);
    for (qsizetype i = 0; i < data.size() && i < 5; ++i) {
        event.data.data32[i] = data[i];
    }
    xcb_send_event(m_connection, 0, root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&event));
    sync();
}

QRect XConnection::frameOf(xcb_window_t window) const
{
    const auto geometryCookie = xcb_get_geometry(m_connection, window);
    const auto originCookie = xcb_translate_coordinates(m_connection, window, root(), 0, 0);
    const Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(m_connection, geometryCookie, nullptr));
    const Reply<xcb_translate_coordinates_reply_t> origin(
        xcb_translate_coordinates_reply(m_connection, originCookie, nullptr));
    if (!geometry || !origin) {
        return {};
    }
    return {origin->dst_x, origin->dst_y, geometry->width, geometry->height};
}

xcb_window_t XConnection::focusedWindow() const
{
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    return reply ? reply->focus : xcb_window_t{XCB_NONE};
}

} // namespace lumenfold::test
