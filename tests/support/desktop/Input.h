#pragma once

#include "tests/support/desktop/XConnection.h"

#include <QPoint>

#include <string_view>

namespace lumenfold::test {

/// A person's keyboard, by way of XTEST: the server treats its keys as real ones.
///
/// Keys are named as X names them ("Escape", "F5", "a", "1", "Caps_Lock") besides "Super", "Alt", "Ctrl" and "Shift".
/// Every call returns when the server has taken the keys. An unknown name throws std::runtime_error.
class Keyboard {
public:
    explicit Keyboard(const QByteArray &display);

    /// "Super+Alt+1": holds all but the last, strikes the last, lets go in the opposite order.
    void press(std::string_view keys);
    void down(std::string_view key);
    void up(std::string_view key);
    /// The key that gives this symbol without a modifier.
    [[nodiscard]] xcb_keycode_t codeOf(std::string_view name) const;

private:
    void send(std::uint8_t type, xcb_keycode_t code);

    XConnection m_connection;
};

enum class Button : std::uint8_t {
    left = 1,
    middle = 2,
    right = 3,
    scrollUp = 4,
    scrollDown = 5,
    scrollLeft = 6,
    scrollRight = 7
};

/// A person's pointer, by way of XTEST. Places are root pixels, origin top left.
class Pointer {
public:
    explicit Pointer(const QByteArray &display);

    void moveTo(QPoint place);
    void down(Button button = Button::left);
    void up(Button button = Button::left);
    void click(QPoint place, Button button = Button::left);
    /// Presses at the first place, moves in small steps, lets go at the second.
    void drag(QPoint from, QPoint to, Button button = Button::left);
    /// One notch for each count.
    void scroll(Button direction, int count = 1);
    [[nodiscard]] QPoint place() const;

private:
    void send(std::uint8_t type, std::uint8_t detail, QPoint place = {});

    XConnection m_connection;
};

} // namespace lumenfold::test
