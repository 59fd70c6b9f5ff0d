#include "platform/screencapture/X11OwnWindowTracker.h"

#include "platform/x11/X11Properties.h"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>

namespace lumenfold {
namespace {

using namespace x11;

template <typename Event>
const Event &as(const xcb_generic_event_t &event)
{
    return reinterpret_cast<const Event &>(event);
}

QRect outerFrame(int x, int y, int width, int height, int border)
{
    return {x, y, width + 2 * border, height + 2 * border};
}

} // namespace

X11OwnWindowTracker::X11OwnWindowTracker(X11Connection &connection, OwnWindowTraces &traces)
    : m_connection(connection), m_traces(traces), m_ownResources(qtResources())
{
    if (!m_ownResources) {
        return;
    }
    connection.addRootEventMask(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    for (const std::uint8_t type : {XCB_CREATE_NOTIFY, XCB_DESTROY_NOTIFY, XCB_UNMAP_NOTIFY, XCB_MAP_NOTIFY,
                                    XCB_REPARENT_NOTIFY, XCB_CONFIGURE_NOTIFY}) {
        m_subscriptions.push_back(
            connection.subscribe(type, [this](const xcb_generic_event_t &event) { handle(event); }));
    }
    adoptExisting();
}

void X11OwnWindowTracker::handle(const xcb_generic_event_t &event)
{
    constexpr std::uint8_t sentEventBit = 0x80;
    if ((event.response_type & sentEventBit) != 0) {
        return;
    }
    // The second field of all these is the window whose mask the event answers. Only the root's children count.
    if (as<xcb_map_notify_event_t>(event).event != m_connection.root()) {
        return;
    }
    switch (event.response_type) {
    case XCB_CREATE_NOTIFY: {
        const auto &created = as<xcb_create_notify_event_t>(event);
        if (m_ownResources->contains(created.window)) {
            m_topLevels[created.window] = {
                created.window, outerFrame(created.x, created.y, created.width, created.height, created.border_width),
                false};
        }
        break;
    }
    case XCB_CONFIGURE_NOTIFY: {
        const auto &moved = as<xcb_configure_notify_event_t>(event);
        const auto known = m_topLevels.find(moved.window);
        if (known != m_topLevels.end()) {
            known->second.frame = outerFrame(moved.x, moved.y, moved.width, moved.height, moved.border_width);
            m_traces.moved(moved.window, known->second.frame, OwnWindowTraces::Clock::now());
        }
        break;
    }
    case XCB_MAP_NOTIFY:
        setMapped(as<xcb_map_notify_event_t>(event).window, true);
        break;
    case XCB_UNMAP_NOTIFY:
        setMapped(as<xcb_unmap_notify_event_t>(event).window, false);
        break;
    case XCB_DESTROY_NOTIFY:
        forget(as<xcb_destroy_notify_event_t>(event).window);
        break;
    case XCB_REPARENT_NOTIFY:
        handleReparent(as<xcb_reparent_notify_event_t>(event));
        break;
    default:
        break;
    }
}

void X11OwnWindowTracker::handleReparent(const xcb_reparent_notify_event_t &event)
{
    if (!m_ownResources->contains(event.window)) {
        return;
    }
    forget(event.window);
    forgetFrameOf(event.window);
    adopt(event.window, event.parent);
}

void X11OwnWindowTracker::setMapped(xcb_window_t window, bool isMapped)
{
    const auto known = m_topLevels.find(window);
    if (known == m_topLevels.end() || known->second.isMapped == isMapped) {
        return;
    }
    known->second.isMapped = isMapped;
    if (isMapped) {
        m_traces.appeared(window, known->second.frame);
    } else {
        m_traces.left(window, OwnWindowTraces::Clock::now());
    }
}

void X11OwnWindowTracker::forget(xcb_window_t window)
{
    setMapped(window, false);
    m_topLevels.erase(window);
}

void X11OwnWindowTracker::forgetFrameOf(xcb_window_t own)
{
    const auto frame = std::ranges::find_if(m_topLevels, [own](const auto &entry) { return entry.second.own == own; });
    if (frame != m_topLevels.end()) {
        forget(frame->first);
    }
}

void X11OwnWindowTracker::adoptExisting()
{
    const auto tree = m_connection.reply(xcb_query_tree_reply, xcb_query_tree(m_connection.xcb(), m_connection.root()));
    if (tree) {
        const xcb_window_t *children = xcb_query_tree_children(tree->get());
        for (int index = 0; index < xcb_query_tree_children_length(tree->get()); ++index) {
            if (m_ownResources->contains(children[index])) {
                adopt(children[index], m_connection.root());
            }
        }
    }
    for (const QWindow *window : QGuiApplication::topLevelWindows()) {
        if (window->handle() == nullptr) {
            continue;
        }
        const auto own = static_cast<xcb_window_t>(window->winId());
        const auto place = m_connection.reply(xcb_query_tree_reply, xcb_query_tree(m_connection.xcb(), own));
        if (place && (*place)->parent != m_connection.root()) {
            adopt(own, (*place)->parent);
        }
    }
}

void X11OwnWindowTracker::adopt(xcb_window_t own, xcb_window_t parent)
{
    xcb_window_t topLevel = own;
    if (parent != m_connection.root()) {
        const auto frame = frameAbove(parent);
        if (!frame) {
            return;
        }
        topLevel = *frame;
    }
    xcb_connection_t *xcb = m_connection.xcb();
    const auto attributesAsked = xcb_get_window_attributes(xcb, topLevel);
    const auto geometryAsked = xcb_get_geometry(xcb, topLevel);
    const auto attributes = m_connection.reply(xcb_get_window_attributes_reply, attributesAsked);
    const auto geometry = m_connection.reply(xcb_get_geometry_reply, geometryAsked);
    if (!attributes || !geometry || (*attributes)->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT) {
        return;
    }
    m_topLevels[topLevel] = {
        own,
        outerFrame((*geometry)->x, (*geometry)->y, (*geometry)->width, (*geometry)->height, (*geometry)->border_width),
        false};
    setMapped(topLevel, (*attributes)->map_state == XCB_MAP_STATE_VIEWABLE);
}

std::optional<xcb_window_t> X11OwnWindowTracker::frameAbove(xcb_window_t window) const
{
    // Window managers nest frames two or three deep.
    constexpr int deepest = 8;
    for (int level = 0; level < deepest; ++level) {
        const auto tree = m_connection.reply(xcb_query_tree_reply, xcb_query_tree(m_connection.xcb(), window));
        if (!tree || (*tree)->parent == XCB_NONE || belongsToAnotherProgram(window)) {
            return std::nullopt;
        }
        if ((*tree)->parent == m_connection.root()) {
            return window;
        }
        window = (*tree)->parent;
    }
    return std::nullopt;
}

bool X11OwnWindowTracker::belongsToAnotherProgram(xcb_window_t window) const
{
    // Window managers mark the windows they manage, and not the frames; bars may be unmanaged.
    constexpr std::uint32_t maxTypes = 16;
    const xcb_atom_t state = m_connection.atom("WM_STATE");
    const auto stateAsked = requestProperty(m_connection, window, state, state, 2);
    const auto typesAsked =
        requestProperty(m_connection, window, m_connection.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, maxTypes);
    const bool isManaged = !readItems(m_connection, stateAsked, state).empty();
    const auto types = readItems(m_connection, typesAsked, XCB_ATOM_ATOM);
    return isManaged || std::ranges::find(types, m_connection.atom("_NET_WM_WINDOW_TYPE_DOCK")) != types.end();
}

} // namespace lumenfold
