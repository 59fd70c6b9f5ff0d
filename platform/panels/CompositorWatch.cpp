#include "platform/panels/CompositorWatch.h"

#include <QByteArray>

#include <xcb/xfixes.h>

namespace lumenfold {
namespace {

xcb_atom_t selectionOf(x11::X11Connection &connection)
{
    const QByteArray name = "_NET_WM_CM_S" + QByteArray::number(connection.screenNumber());
    return connection.atom(name.constData());
}

} // namespace

CompositorWatch::CompositorWatch(x11::X11Connection &connection)
    : m_connection(connection), m_selection(selectionOf(connection))
{
    xcb_connection_t *xcb = connection.xcb();
    // Watching first, asking second: a change in between is then seen twice instead of never.
    if (const auto *xfixes = connection.extension(&xcb_xfixes_id)) {
        const auto version = xcb_xfixes_query_version(xcb, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION);
        connection.discard(version.sequence);
        m_subscription =
            connection.subscribe(static_cast<std::uint8_t>(xfixes->first_event + XCB_XFIXES_SELECTION_NOTIFY),
                                 [this](const xcb_generic_event_t &event) { selectionChanged(event); });
        xcb_xfixes_select_selection_input(xcb, connection.root(), m_selection,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    const auto owner = connection.reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(xcb, m_selection));
    m_running = owner && (*owner)->owner != XCB_NONE;
}

void CompositorWatch::selectionChanged(const xcb_generic_event_t &event)
{
    const auto &notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
    if (notify.selection != m_selection) {
        return;
    }
    const bool running = notify.owner != XCB_NONE;
    if (running != m_running) {
        m_running = running;
        Q_EMIT changed(running);
    }
}

} // namespace lumenfold
