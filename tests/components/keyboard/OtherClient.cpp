#include "tests/components/keyboard/OtherClient.h"

namespace lumenfold::test {

OtherClient::OtherClient(const QByteArray &display) : m_connection(display) {}

bool OtherClient::grabKey(xcb_keycode_t keycode, std::uint16_t modifiers)
{
    const Reply<xcb_generic_error_t> error(xcb_request_check(
        m_connection.get(), xcb_grab_key_checked(m_connection.get(), 0, m_connection.root(), modifiers, keycode,
                                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    return !error;
}

void OtherClient::ungrabKey(xcb_keycode_t keycode, std::uint16_t modifiers)
{
    xcb_ungrab_key(m_connection.get(), keycode, m_connection.root(), modifiers);
    m_connection.sync();
}

bool OtherClient::grabKeyboard()
{
    const Reply<xcb_grab_keyboard_reply_t> reply(
        xcb_grab_keyboard_reply(m_connection.get(),
                                xcb_grab_keyboard(m_connection.get(), 0, m_connection.root(), XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void OtherClient::ungrabKeyboard()
{
    xcb_ungrab_keyboard(m_connection.get(), XCB_CURRENT_TIME);
    m_connection.sync();
}

int OtherClient::presses()
{
    m_connection.sync();
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        if ((event->response_type & 0x7f) == XCB_KEY_PRESS) {
            ++m_presses;
        }
    }
    return m_presses;
}

} // namespace lumenfold::test
