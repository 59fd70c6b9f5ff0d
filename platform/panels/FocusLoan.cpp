#include "platform/panels/FocusLoan.h"

#include "platform/x11/XcbPointer.h"

#include <memory>

#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

namespace lumenfold {
namespace {

x11::KeyboardMap currentMap(xcb_connection_t *connection)
{
    const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS),
                                                                             xkb_context_unref);
    const std::int32_t keyboard = xkb_x11_get_core_keyboard_device_id(connection);
    if (!context || keyboard < 0) {
        return {};
    }
    const std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap(
        xkb_x11_keymap_new_from_device(context.get(), connection, keyboard, XKB_KEYMAP_COMPILE_NO_FLAGS),
        xkb_keymap_unref);
    return keymap ? x11::KeyboardMap::fromKeymap(keymap.get()) : x11::KeyboardMap{};
}

} // namespace

FocusLoan::FocusLoan(xcb_connection_t *connection) : m_connection(connection), m_map(currentMap(connection))
{
    const x11::XcbPointer<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    if (focus) {
        m_previous = focus->focus;
        m_revertTo = focus->revert_to;
    }
}

FocusLoan::~FocusLoan()
{
    // The window may be gone by now; then the server has already decided who comes next.
    const auto cookie = xcb_set_input_focus_checked(m_connection, m_revertTo, m_previous, XCB_CURRENT_TIME);
    xcb_discard_reply(m_connection, cookie.sequence);
}

std::optional<KeyEvent> FocusLoan::keyDown(std::uint32_t keycode, std::uint32_t state) const
{
    // The core protocol keeps the active layout above the modifiers and buttons.
    constexpr int layoutShift = 13;
    constexpr std::uint32_t layoutBits = 0x3;
    return m_map.keyDown(static_cast<xcb_keycode_t>(keycode), static_cast<std::uint16_t>(state),
                         (state >> layoutShift) & layoutBits);
}

} // namespace lumenfold
