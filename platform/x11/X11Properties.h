#pragma once

#include "platform/x11/X11Connection.h"

#include <QByteArray>

#include <cstdint>
#include <optional>
#include <vector>

namespace lumenfold::x11 {

/// Properties are written by other programs: any type, any size. So a read names the type it wants and the most it will
/// take, and everything else counts as "not there".
///
/// Ask for many windows at once with `requestProperty` and read the answers afterwards: one round trip for all.

/// More windows than anybody has open: the most that is read of a list of them.
inline constexpr std::uint32_t maxClients = 4096;

/// Asks for at most `maxItems` 32-bit units.
[[nodiscard]] xcb_get_property_cookie_t requestProperty(const X11Connection &connection, xcb_window_t window,
                                                        xcb_atom_t property, xcb_atom_t type, std::uint32_t maxItems);

/// The 32-bit items of the answer; empty when there are none, or they have another type or format, or the window is
/// gone.
[[nodiscard]] std::vector<std::uint32_t> readItems(const X11Connection &connection, xcb_get_property_cookie_t cookie,
                                                   xcb_atom_t type);

/// The bytes of the answer (format 8), under the same conditions.
[[nodiscard]] QByteArray readBytes(const X11Connection &connection, xcb_get_property_cookie_t cookie, xcb_atom_t type);

/// One property of one window, waited for.
[[nodiscard]] std::vector<std::uint32_t> itemsOfProperty(const X11Connection &connection, xcb_window_t window,
                                                         xcb_atom_t property, xcb_atom_t type, std::uint32_t maxItems);

/// The first item of itemsOfProperty.
[[nodiscard]] std::optional<std::uint32_t> itemOfProperty(const X11Connection &connection, xcb_window_t window,
                                                          xcb_atom_t property, xcb_atom_t type);

/// The same from a reply that is already there (an awaited one).
[[nodiscard]] std::vector<std::uint32_t> itemsOf(const xcb_get_property_reply_t &reply, xcb_atom_t type);

} // namespace lumenfold::x11
