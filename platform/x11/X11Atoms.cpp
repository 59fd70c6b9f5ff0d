#include "platform/x11/X11Atoms.h"

#include "platform/x11/XcbPointer.h"

#include <cstring>
#include <utility>
#include <vector>

namespace lumenfold::x11 {

X11Atoms::X11Atoms(xcb_connection_t *connection) : m_connection(connection) {}

xcb_atom_t X11Atoms::atom(const char *name)
{
    const auto known = m_atoms.find(name);
    if (known != m_atoms.end()) {
        return known->second;
    }
    prefetch({name});
    const auto found = m_atoms.find(name);
    return found == m_atoms.end() ? xcb_atom_t{XCB_ATOM_NONE} : found->second;
}

void X11Atoms::prefetch(std::initializer_list<const char *> names)
{
    std::vector<std::pair<const char *, xcb_intern_atom_cookie_t>> asked;
    for (const char *name : names) {
        if (!m_atoms.contains(name)) {
            asked.emplace_back(name,
                               xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name));
        }
    }
    for (const auto &[name, cookie] : asked) {
        const XcbPointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_connection, cookie, nullptr));
        if (reply) {
            m_atoms.emplace(name, reply->atom);
        }
    }
}

} // namespace lumenfold::x11
