#pragma once

#include "platform/keyboard/HotKeyService.h"
#include "platform/keyboard/x11/KeyboardMap.h"
#include "platform/x11/XcbPointer.h"

#include <QByteArray>

#include <xcb/xcb.h>

#include <bitset>
#include <cstdint>
#include <memory>
#include <optional>

namespace lumenfold::x11 {

/// One bit for each keycode.
using KeySet = std::bitset<256>;

/// The router's own connection to the X server: grabs, and what the server says about the keyboard. The router's
/// thread, apart from open().
///
/// Every grab freezes the keyboard with each press and release that it delivers, until swallow() or replay() says what
/// becomes of it. No X error ends the process. Once the server is gone (isUsable), everything fails.
class KeyboardConnection {
public:
    struct Input {
        /// A press or a release comes from a grab and has frozen the keyboard; `watchedRelease` is only a notice.
        enum class Type { press, release, watchedRelease, mapChanged };
        Type type = Type::press;
        xcb_keycode_t keycode = 0;
        /// The modifiers before the event, as in a key event of the core protocol.
        std::uint16_t state = 0;
    };
    enum class HoldResult { held, busy };

    /// `displayName` may be empty for $DISPLAY. Null when there is no such server, or it has no XKB extension.
    [[nodiscard]] static std::unique_ptr<KeyboardConnection> open(const QByteArray &displayName);

    [[nodiscard]] bool isUsable() const;
    [[nodiscard]] int descriptor() const;
    void flush();
    /// Returns when the server has done all that it was asked for.
    void sync();
    /// What the server has said since; nothing when it has been silent.
    [[nodiscard]] std::optional<Input> nextInput();

    /// The keyboard as it is now. Nothing when the server does not say.
    [[nodiscard]] std::optional<KeyboardMap> loadMap();
    /// The keys that are down now.
    [[nodiscard]] KeySet pressedKeys();
    /// The layout that is active now, counted from 0. The events of grabs do not tell it.
    [[nodiscard]] std::size_t activeLayout();
    /// Whether to be told of every release of a key, also of those that go to other windows.
    void watchReleases(bool watch);

    /// All of it or nothing: hotKeyExistsError when another client holds a part of it.
    [[nodiscard]] HotKeyStatus grab(const KeyGrab &grab);
    void ungrab(const KeyGrab &grab);

    /// Holds the whole keyboard, also in place of a grab of ours that is active. The keyboard is frozen then, and the
    /// event it was frozen with is gone. Busy while another client holds it.
    [[nodiscard]] HoldResult holdKeyboard();
    /// Gives the keyboard back, and what was typed since the freeze with it.
    void releaseKeyboard();

    /// Nobody gets the event that froze the keyboard; the next one freezes it again, if a grab is still active then.
    void swallow();
    /// Ends the grab and gives the event that froze the keyboard to whoever would have got it without.
    void replay();

private:
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
    };

    KeyboardConnection(xcb_connection_t *connection, xcb_window_t root);

    [[nodiscard]] bool setUpXkb();
    void setUpXinput();
    [[nodiscard]] std::optional<Input> toInput(const xcb_generic_event_t &event) const;

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    xcb_window_t m_root;
    std::uint8_t m_firstXkbEvent = 0;
    /// 0 when the server has no XInput2; then no release can be watched.
    std::uint8_t m_xinputOpcode = 0;
};

} // namespace lumenfold::x11
