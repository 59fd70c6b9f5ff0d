#include "tests/support/desktop/Input.h"

#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

namespace lumenfold::test {
namespace {

std::vector<std::string_view> parts(std::string_view keys)
{
    std::vector<std::string_view> names;
    while (true) {
        const std::size_t plus = keys.find('+');
        names.push_back(keys.substr(0, plus));
        if (plus == std::string_view::npos) {
            return names;
        }
        keys.remove_prefix(plus + 1);
    }
}

std::string keysymName(std::string_view name)
{
    if (name == "Super") {
        return "Super_L";
    }
    if (name == "Alt") {
        return "Alt_L";
    }
    if (name == "Ctrl") {
        return "Control_L";
    }
    if (name == "Shift") {
        return "Shift_L";
    }
    return std::string(name);
}

} // namespace

Keyboard::Keyboard(const QByteArray &display) : m_connection(display) {}

void Keyboard::press(std::string_view keys)
{
    const std::vector<std::string_view> names = parts(keys);
    std::for_each(names.begin(), names.end(), [this](std::string_view name) { down(name); });
    std::for_each(names.rbegin(), names.rend(), [this](std::string_view name) { up(name); });
}

void Keyboard::down(std::string_view key)
{
    send(XCB_KEY_PRESS, codeOf(key));
}

void Keyboard::up(std::string_view key)
{
    send(XCB_KEY_RELEASE, codeOf(key));
}

xcb_keycode_t Keyboard::codeOf(std::string_view name) const
{
    const std::string fullName = keysymName(name);
    const xkb_keysym_t wanted = xkb_keysym_from_name(fullName.c_str(), XKB_KEYSYM_NO_FLAGS);
    const xcb_setup_t *setup = xcb_get_setup(m_connection.get());
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const Reply<xcb_get_keyboard_mapping_reply_t> mapping(xcb_get_keyboard_mapping_reply(
        m_connection.get(), xcb_get_keyboard_mapping(m_connection.get(), setup->min_keycode, count), nullptr));
    if (mapping && wanted != XKB_KEY_NoSymbol) {
        const xcb_keysym_t *symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
        for (int i = 0; i < count; ++i) {
            if (symbols[i * mapping->keysyms_per_keycode] == wanted) {
                return static_cast<xcb_keycode_t>(setup->min_keycode + i);
            }
        }
    }
    throw std::runtime_error("no key is called " + std::string(name));
}

void Keyboard::send(std::uint8_t type, xcb_keycode_t code)
{
    xcb_test_fake_input(m_connection.get(), type, code, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    m_connection.sync();
}

Pointer::Pointer(const QByteArray &display) : m_connection(display) {}

void Pointer::moveTo(QPoint place)
{
    send(XCB_MOTION_NOTIFY, 0, place);
}

void Pointer::down(Button button)
{
    send(XCB_BUTTON_PRESS, static_cast<std::uint8_t>(button));
}

void Pointer::up(Button button)
{
    send(XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(button));
}

void Pointer::click(QPoint place, Button button)
{
    moveTo(place);
    down(button);
    up(button);
}

void Pointer::drag(QPoint from, QPoint to, Button button)
{
    constexpr int steps = 12;
    moveTo(from);
    down(button);
    for (int step = 1; step <= steps; ++step) {
        moveTo(from + (to - from) * step / steps);
    }
    up(button);
}

void Pointer::scroll(Button direction, int count)
{
    for (int i = 0; i < count; ++i) {
        down(direction);
        up(direction);
    }
}

QPoint Pointer::place() const
{
    const Reply<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(
        m_connection.get(), xcb_query_pointer(m_connection.get(), m_connection.root()), nullptr));
    return reply ? QPoint(reply->root_x, reply->root_y) : QPoint();
}

void Pointer::send(std::uint8_t type, std::uint8_t detail, QPoint place)
{
    xcb_test_fake_input(m_connection.get(), type, detail, XCB_CURRENT_TIME,
                        type == XCB_MOTION_NOTIFY ? m_connection.root() : xcb_window_t{XCB_NONE},
                        static_cast<std::int16_t>(place.x()), static_cast<std::int16_t>(place.y()), 0);
    m_connection.sync();
}

} // namespace lumenfold::test
