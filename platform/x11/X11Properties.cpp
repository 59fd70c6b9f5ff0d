#include "platform/x11/X11Properties.h"

namespace lumenfold::x11 {

xcb_get_property_cookie_t requestProperty(const X11Connection &connection, xcb_window_t window, xcb_atom_t property,
                                          xcb_atom_t type, std::uint32_t maxItems)
{
    return xcb_get_property(connection.xcb(), 0, window, property, type, 0, maxItems);
}

std::vector<std::uint32_t> readItems(const X11Connection &connection, xcb_get_property_cookie_t cookie, xcb_atom_t type)
{
    const auto answer = connection.reply(xcb_get_property_reply, cookie);
    return answer ? itemsOf(**answer, type) : std::vector<std::uint32_t>();
}

QByteArray readBytes(const X11Connection &connection, xcb_get_property_cookie_t cookie, xcb_atom_t type)
{
    const auto answer = connection.reply(xcb_get_property_reply, cookie);
    if (!answer || (*answer)->type != type || (*answer)->format != 8) {
        return {};
    }
    return {static_cast<const char *>(xcb_get_property_value(answer->get())),
            xcb_get_property_value_length(answer->get())};
}

std::vector<std::uint32_t> itemsOfProperty(const X11Connection &connection, xcb_window_t window, xcb_atom_t property,
                                           xcb_atom_t type, std::uint32_t maxItems)
{
    return readItems(connection, requestProperty(connection, window, property, type, maxItems), type);
}

std::optional<std::uint32_t> itemOfProperty(const X11Connection &connection, xcb_window_t window, xcb_atom_t property,
                                            xcb_atom_t type)
{
    const std::vector<std::uint32_t> items = itemsOfProperty(connection, window, property, type, 1);
    return items.empty() ? std::nullopt : std::optional(items.front());
}

std::vector<std::uint32_t> itemsOf(const xcb_get_property_reply_t &reply, xcb_atom_t type)
{
    constexpr int itemBits = 32;
    if (reply.type != type || reply.format != itemBits) {
        return {};
    }
    const auto *first = static_cast<const std::uint32_t *>(xcb_get_property_value(&reply));
    return {first, first + reply.value_len};
}

} // namespace lumenfold::x11
