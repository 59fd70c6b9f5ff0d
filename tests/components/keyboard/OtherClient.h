#pragma once

#include "tests/support/desktop/XConnection.h"

#include <xcb/xcb.h>

namespace lumenfold::test {

/// Another program that wants keys for itself, such as a window manager or an open menu.
class OtherClient {
public:
    explicit OtherClient(const QByteArray &display);

    /// A passive grab on the root window. False when it is refused.
    [[nodiscard]] bool grabKey(xcb_keycode_t keycode, std::uint16_t modifiers);
    void ungrabKey(xcb_keycode_t keycode, std::uint16_t modifiers);
    /// False when another client has it.
    [[nodiscard]] bool grabKeyboard();
    void ungrabKeyboard();

    /// The presses that its grabs brought so far.
    [[nodiscard]] int presses();

private:
    XConnection m_connection;
    int m_presses = 0;
};

} // namespace lumenfold::test
