#pragma once

#include "platform/keyboard/KeyEvent.h"
#include "platform/keyboard/x11/KeyboardMap.h"

#include <cstdint>
#include <optional>

#include <xcb/xcb.h>

namespace lumenfold {

/// The keyboard focus while it is with a panel, for want of anything better: remembers who had it, and gives it back
/// when destroyed.
class FocusLoan {
public:
    /// Before the focus is moved. The connection is the toolkit's.
    explicit FocusLoan(xcb_connection_t *connection);
    ~FocusLoan();
    FocusLoan(const FocusLoan &) = delete;
    FocusLoan &operator=(const FocusLoan &) = delete;

    /// What the toolkit's key event means; nothing for keys that have no place on the board.
    [[nodiscard]] std::optional<KeyEvent> keyDown(std::uint32_t keycode, std::uint32_t state) const;

private:
    xcb_connection_t *m_connection;
    xcb_window_t m_previous = XCB_NONE;
    std::uint8_t m_revertTo = XCB_INPUT_FOCUS_NONE;
    x11::KeyboardMap m_map;
};

} // namespace lumenfold
