#pragma once

#include <initializer_list>
#include <string>
#include <unordered_map>

#include <xcb/xcb.h>

namespace lumenfold::x11 {

/// The server's numbers for names, asked for once each.
class X11Atoms {
public:
    explicit X11Atoms(xcb_connection_t *connection);

    /// XCB_ATOM_NONE when the connection is broken. Waits for the server the first time a name is used.
    [[nodiscard]] xcb_atom_t atom(const char *name);

    /// Asks for all of these in one round trip.
    void prefetch(std::initializer_list<const char *> names);

private:
    xcb_connection_t *m_connection;
    std::unordered_map<std::string, xcb_atom_t> m_atoms;
};

} // namespace lumenfold::x11
