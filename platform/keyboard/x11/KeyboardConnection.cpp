#include "platform/keyboard/x11/KeyboardConnection.h"

// The header names a field with a word that C++ keeps for itself.
#define explicit explicitComponents
#include <xcb/xkb.h>
#undef explicit
#include <xcb/xinput.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include <utility>
#include <vector>

namespace lumenfold::x11 {
namespace {

constexpr std::uint8_t sentEventBit = 0x80;

/// As long as the part of every XKB event that names its kind.
struct XkbEventHead {
    std::uint8_t responseType;
    std::uint8_t xkbType;
};

xcb_screen_t *screenOf(xcb_connection_t *connection, int number)
{
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 0 && number > 0; --number) {
        xcb_screen_next(&screens);
    }
    return screens.rem > 0 ? screens.data : nullptr;
}

} // namespace

std::unique_ptr<KeyboardConnection> KeyboardConnection::open(const QByteArray &displayName)
{
    int screenNumber = 0;
    xcb_connection_t *xcb = xcb_connect(displayName.isEmpty() ? nullptr : displayName.constData(), &screenNumber);
    if (xcb_connection_has_error(xcb)) {
        xcb_disconnect(xcb);
        return nullptr;
    }
    const xcb_screen_t *screen = screenOf(xcb, screenNumber);
    std::unique_ptr<KeyboardConnection> connection(new KeyboardConnection(xcb, screen ? screen->root : XCB_NONE));
    if (!screen || !connection->setUpXkb()) {
        return nullptr;
    }
    connection->setUpXinput();
    return connection;
}

KeyboardConnection::KeyboardConnection(xcb_connection_t *connection, xcb_window_t root)
    : m_connection(connection), m_root(root)
{
}

bool KeyboardConnection::setUpXkb()
{
    xcb_connection_t *xcb = m_connection.get();
    if (!xkb_x11_setup_xkb_extension(xcb, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                     XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &m_firstXkbEvent,
                                     nullptr)) {
        return false;
    }
    // A held key comes as presses without releases in between, so that a repeat can be told from a second press.
    const XcbPointer<xcb_xkb_per_client_flags_reply_t> flags(xcb_xkb_per_client_flags_reply(
        xcb,
        xcb_xkb_per_client_flags(xcb, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
                                 XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT, 0, 0, 0),
        nullptr));
    if (!flags || !(flags->value & XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT)) {
        return false;
    }

    constexpr std::uint16_t mapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS |
                                       XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_VIRTUAL_MODS |
                                       XCB_XKB_MAP_PART_VIRTUAL_MOD_MAP;
    constexpr std::uint16_t newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
    constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    xcb_xkb_select_events_details_t details{};
    details.affectNewKeyboard = newKeyboardDetails;
    details.newKeyboardDetails = newKeyboardDetails;
    xcb_xkb_select_events_aux(xcb, XCB_XKB_ID_USE_CORE_KBD, events, 0, 0, mapParts, mapParts, &details);
    return true;
}

void KeyboardConnection::setUpXinput()
{
    xcb_connection_t *xcb = m_connection.get();
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(xcb, &xcb_input_id);
    if (!extension || !extension->present) {
        return;
    }
    // Before 2.2, grabs of other clients hide raw events.
    const XcbPointer<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(xcb, xcb_input_xi_query_version(xcb, 2, 2), nullptr));
    if (version && (version->major_version > 2 || version->minor_version >= 2)) {
        m_xinputOpcode = extension->major_opcode;
    }
}

bool KeyboardConnection::isUsable() const
{
    return xcb_connection_has_error(m_connection.get()) == 0;
}

int KeyboardConnection::descriptor() const
{
    return xcb_get_file_descriptor(m_connection.get());
}

void KeyboardConnection::flush()
{
    xcb_flush(m_connection.get());
}

void KeyboardConnection::sync()
{
    const XcbPointer<xcb_get_input_focus_reply_t> answered(
        xcb_get_input_focus_reply(m_connection.get(), xcb_get_input_focus(m_connection.get()), nullptr));
}

std::optional<KeyboardConnection::Input> KeyboardConnection::nextInput()
{
    while (const XcbPointer<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        if (const auto input = toInput(*event)) {
            return input;
        }
    }
    return std::nullopt;
}

std::optional<KeyboardConnection::Input> KeyboardConnection::toInput(const xcb_generic_event_t &event) const
{
    const auto type = static_cast<std::uint8_t>(event.response_type & ~sentEventBit);
    if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
        // Any client can send an event; only the server's own freeze the keyboard.
        if (event.response_type & sentEventBit) {
            return std::nullopt;
        }
        const auto &key = reinterpret_cast<const xcb_key_press_event_t &>(event);
        return Input{.type = type == XCB_KEY_PRESS ? Input::Type::press : Input::Type::release,
                     .keycode = key.detail,
                     .state = key.state};
    }
    if (type == XCB_GE_GENERIC) {
        const auto &generic = reinterpret_cast<const xcb_ge_generic_event_t &>(event);
        if (generic.extension == m_xinputOpcode && generic.event_type == XCB_INPUT_RAW_KEY_RELEASE) {
            const auto &raw = reinterpret_cast<const xcb_input_raw_key_release_event_t &>(event);
            return Input{.type = Input::Type::watchedRelease, .keycode = static_cast<xcb_keycode_t>(raw.detail)};
        }
    } else if (type == m_firstXkbEvent) {
        const auto xkbType = reinterpret_cast<const XkbEventHead &>(event).xkbType;
        if (xkbType == XCB_XKB_MAP_NOTIFY || xkbType == XCB_XKB_NEW_KEYBOARD_NOTIFY) {
            return Input{.type = Input::Type::mapChanged};
        }
    }
    return std::nullopt;
}

std::optional<KeyboardMap> KeyboardConnection::loadMap()
{
    const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(
        xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES), xkb_context_unref);
    const std::int32_t device = xkb_x11_get_core_keyboard_device_id(m_connection.get());
    if (!context || device < 0) {
        return std::nullopt;
    }
    const std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap(
        xkb_x11_keymap_new_from_device(context.get(), m_connection.get(), device, XKB_KEYMAP_COMPILE_NO_FLAGS),
        xkb_keymap_unref);
    if (!keymap) {
        return std::nullopt;
    }
    return KeyboardMap::fromKeymap(keymap.get());
}

KeySet KeyboardConnection::pressedKeys()
{
    KeySet pressed;
    const XcbPointer<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(m_connection.get(), xcb_query_keymap(m_connection.get()), nullptr));
    if (reply) {
        for (std::size_t keycode = 0; keycode < pressed.size(); ++keycode) {
            pressed[keycode] = reply->keys[keycode / 8] >> (keycode % 8) & 1;
        }
    }
    return pressed;
}

std::size_t KeyboardConnection::activeLayout()
{
    const XcbPointer<xcb_xkb_get_state_reply_t> state(xcb_xkb_get_state_reply(
        m_connection.get(), xcb_xkb_get_state(m_connection.get(), XCB_XKB_ID_USE_CORE_KBD), nullptr));
    return state ? state->group : 0;
}

void KeyboardConnection::watchReleases(bool watch)
{
    if (m_xinputOpcode == 0) {
        return;
    }
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } events{.head = {.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1},
             .mask = watch ? std::uint32_t{XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE} : 0};
    xcb_input_xi_select_events(m_connection.get(), m_root, 1, &events.head);
}

HotKeyStatus KeyboardConnection::grab(const KeyGrab &grab)
{
    xcb_connection_t *xcb = m_connection.get();
    // All requests are sent before the first answer is waited for: one round trip in all.
    std::vector<xcb_void_cookie_t> cookies;
    for (const xcb_keycode_t keycode : grab.keycodes) {
        for (const std::uint16_t mask : grab.modifierMasks) {
            constexpr std::uint8_t eventsToGrabOnly = 0;
            cookies.push_back(xcb_grab_key_checked(xcb, eventsToGrabOnly, m_root, mask, keycode, XCB_GRAB_MODE_ASYNC,
                                                   XCB_GRAB_MODE_SYNC));
        }
    }
    HotKeyStatus status = isUsable() ? noHotKeyError : hotKeyInvalidError;
    for (const xcb_void_cookie_t cookie : cookies) {
        if (const XcbPointer<xcb_generic_error_t> error{xcb_request_check(xcb, cookie)}) {
            status = error->error_code == XCB_ACCESS ? hotKeyExistsError : hotKeyInvalidError;
        }
    }
    if (!isUsable()) {
        return hotKeyInvalidError;
    }
    if (status != noHotKeyError) {
        ungrab(grab);
    }
    return status;
}

void KeyboardConnection::ungrab(const KeyGrab &grab)
{
    // Taking back a grab that was refused is no error: the server removes only what this client has.
    for (const xcb_keycode_t keycode : grab.keycodes) {
        for (const std::uint16_t mask : grab.modifierMasks) {
            xcb_ungrab_key(m_connection.get(), keycode, m_root, mask);
        }
    }
}

KeyboardConnection::HoldResult KeyboardConnection::holdKeyboard()
{
    xcb_connection_t *xcb = m_connection.get();
    constexpr std::uint8_t eventsToGrabOnly = 0;
    const XcbPointer<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(
        xcb,
        xcb_grab_keyboard(xcb, eventsToGrabOnly, m_root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC),
        nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS ? HoldResult::held : HoldResult::busy;
}

void KeyboardConnection::releaseKeyboard()
{
    xcb_ungrab_keyboard(m_connection.get(), XCB_CURRENT_TIME);
}

void KeyboardConnection::swallow()
{
    xcb_allow_events(m_connection.get(), XCB_ALLOW_SYNC_KEYBOARD, XCB_CURRENT_TIME);
}

void KeyboardConnection::replay()
{
    xcb_allow_events(m_connection.get(), XCB_ALLOW_REPLAY_KEYBOARD, XCB_CURRENT_TIME);
}

} // namespace lumenfold::x11
