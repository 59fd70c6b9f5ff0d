#include "platform/panels/PanelStackKeeper.h"

#include <QDebug>
#include <QMetaObject>

#include <array>
#include <utility>

namespace lumenfold {
namespace {

/// A window manager restacks a window a few times when it maps or activates it, and each time may be answered twice
/// before the answer shows; more than this within a second is a program that wants to be on top by all means.
constexpr int mostRounds = 20;
constexpr qint64 roundsPeriodMs = 1000;

RootStacking::Redirect redirectOf(std::uint8_t overrideRedirect)
{
    return overrideRedirect != 0 ? RootStacking::Redirect::overridden : RootStacking::Redirect::managed;
}

} // namespace

PanelStackKeeper::PanelStackKeeper(x11::X11Connection &connection, Raise raise)
    : m_connection(connection)
    , m_raise(std::move(raise))
    , m_stacking([this](std::uint32_t window) { return holdsForeignWindow(window); })
{
}

void PanelStackKeeper::setPanels(std::vector<std::uint32_t> bottomToTop)
{
    m_panels = std::move(bottomToTop);
    m_rounds.clear();
    m_stacking.tolerateNone();
    watch(m_panels.empty() ? Watching::no : Watching::yes);
    checkSoon();
}

void PanelStackKeeper::watch(Watching watching)
{
    if (watching == m_watching) {
        return;
    }
    m_watching = watching;
    const std::uint32_t mask = watching == Watching::yes ? XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY : XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(m_connection.xcb(), m_connection.root(), XCB_CW_EVENT_MASK, &mask);
    m_subscriptions.clear();
    if (watching == Watching::no) {
        return;
    }
    for (const std::uint8_t type :
         std::to_array<std::uint8_t>({XCB_CREATE_NOTIFY, XCB_DESTROY_NOTIFY, XCB_MAP_NOTIFY, XCB_UNMAP_NOTIFY,
                                      XCB_CONFIGURE_NOTIFY, XCB_CIRCULATE_NOTIFY, XCB_REPARENT_NOTIFY})) {
        m_subscriptions.push_back(
            m_connection.subscribe(type, [this](const xcb_generic_event_t &event) { noticed(event); }));
    }
    readOrder();
}

void PanelStackKeeper::readOrder()
{
    xcb_connection_t *xcb = m_connection.xcb();
    const auto cookie = xcb_query_tree(xcb, m_connection.root());
    m_orderReadAt = cookie.sequence;
    const auto tree = m_connection.reply(xcb_query_tree_reply, cookie);
    if (!tree) {
        return;
    }
    const std::span windows(xcb_query_tree_children(tree->get()),
                            static_cast<std::size_t>(xcb_query_tree_children_length(tree->get())));
    std::vector<xcb_get_window_attributes_cookie_t> cookies;
    for (const xcb_window_t window : windows) {
        cookies.push_back(xcb_get_window_attributes(xcb, window));
    }
    std::vector<RootStacking::Entry> entries;
    for (std::size_t index = 0; index < windows.size(); ++index) {
        const auto attributes = m_connection.reply(xcb_get_window_attributes_reply, cookies[index]);
        if (attributes) {
            entries.push_back({windows[index], redirectOf((*attributes)->override_redirect),
                               (*attributes)->map_state == XCB_MAP_STATE_UNMAPPED ? RootStacking::MapState::unmapped
                                                                                  : RootStacking::MapState::mapped});
        }
    }
    m_stacking.reset(std::move(entries));
}

void PanelStackKeeper::noticed(const xcb_generic_event_t &event)
{
    // Wraps around after 2^32 requests, hence the signed distance.
    if (static_cast<std::int32_t>(event.full_sequence - m_orderReadAt) < 0) {
        return;
    }
    switch (event.response_type & 0x7f) {
    case XCB_CREATE_NOTIFY: {
        const auto &create = reinterpret_cast<const xcb_create_notify_event_t &>(event);
        m_stacking.created(create.window, redirectOf(create.override_redirect));
        return;
    }
    case XCB_DESTROY_NOTIFY:
        m_stacking.destroyed(reinterpret_cast<const xcb_destroy_notify_event_t &>(event).window);
        m_rounds.erase(reinterpret_cast<const xcb_destroy_notify_event_t &>(event).window);
        return;
    case XCB_UNMAP_NOTIFY:
        m_stacking.unmapped(reinterpret_cast<const xcb_unmap_notify_event_t &>(event).window);
        return;
    case XCB_MAP_NOTIFY: {
        const auto &map = reinterpret_cast<const xcb_map_notify_event_t &>(event);
        m_stacking.mapped(map.window, redirectOf(map.override_redirect));
        break;
    }
    case XCB_CONFIGURE_NOTIFY: {
        const auto &configure = reinterpret_cast<const xcb_configure_notify_event_t &>(event);
        m_stacking.placedAbove(configure.window, configure.above_sibling, redirectOf(configure.override_redirect));
        break;
    }
    case XCB_CIRCULATE_NOTIFY: {
        const auto &circulate = reinterpret_cast<const xcb_circulate_notify_event_t &>(event);
        if (circulate.place == XCB_PLACE_ON_TOP) {
            m_stacking.raisedToTop(circulate.window);
        } else {
            m_stacking.loweredToBottom(circulate.window);
        }
        break;
    }
    case XCB_REPARENT_NOTIFY: {
        const auto &reparent = reinterpret_cast<const xcb_reparent_notify_event_t &>(event);
        if (reparent.parent == m_connection.root()) {
            m_stacking.created(reparent.window, redirectOf(reparent.override_redirect));
        } else {
            m_stacking.reparentedInto(reparent.window, reparent.parent);
        }
        break;
    }
    default:
        return;
    }
    checkSoon();
}

void PanelStackKeeper::checkSoon()
{
    if (!m_checkPosted) {
        m_checkPosted = true;
        QMetaObject::invokeMethod(this, &PanelStackKeeper::check, Qt::QueuedConnection);
    }
}

void PanelStackKeeper::check()
{
    m_checkPosted = false;
    const auto ordinary = m_stacking.topmostOrdinaryAbove(m_panels);
    if (!ordinary) {
        return;
    }
    Rounds &rounds = m_rounds[*ordinary];
    if (!rounds.since.isValid() || rounds.since.hasExpired(roundsPeriodMs)) {
        rounds.count = 0;
        rounds.since.start();
    }
    if (++rounds.count > mostRounds) {
        qInfo().noquote().nospace() << "LumenFold panels: window 0x" << QString::number(*ordinary, 16)
                                    << " is raised again and again, it stays in front";
        m_stacking.tolerate(*ordinary);
        checkSoon();
        return;
    }
    const std::vector<std::uint32_t> covered = m_stacking.standingBelow(m_panels, *ordinary);
    m_raise(covered, *ordinary);
}

bool PanelStackKeeper::holdsForeignWindow(std::uint32_t window) const
{
    const auto tree = m_connection.reply(xcb_query_tree_reply, xcb_query_tree(m_connection.xcb(), window));
    if (!tree) {
        return false;
    }
    const std::uint32_t clientBits = ~xcb_get_setup(m_connection.xcb())->resource_id_mask;
    const std::span children(xcb_query_tree_children(tree->get()),
                             static_cast<std::size_t>(xcb_query_tree_children_length(tree->get())));
    for (const xcb_window_t child : children) {
        if ((child & clientBits) != (window & clientBits)) {
            return true;
        }
    }
    return false;
}

} // namespace lumenfold
