#pragma once

#include "platform/panels/RootStacking.h"
#include "platform/x11/X11Connection.h"

#include <QElapsedTimer>
#include <QObject>

#include <functional>
#include <span>
#include <unordered_map>
#include <vector>

namespace lumenfold {

/// Keeps the panels above ordinary windows that are raised, mapped or made full-screen over them. It listens to what
/// the server tells about its top-level windows while there is a panel to keep, and to nothing otherwise.
///
/// Not every window that comes on top is answered: menus and the like belong there (see RootStacking), and a program
/// that always raises its window again in return is let win after a few rounds.
class PanelStackKeeper : public QObject {
    Q_OBJECT

public:
    /// Puts `windows` (bottom to top) directly above `above`.
    using Raise = std::function<void(std::span<const std::uint32_t> windows, std::uint32_t above)>;

    /// The connection outlives the keeper, and nothing else selects events of the root window on it.
    PanelStackKeeper(x11::X11Connection &connection, Raise raise);

    /// The windows of the visible panels, bottom to top. Gives every program a fresh chance to stay out of the way.
    void setPanels(std::vector<std::uint32_t> bottomToTop);

private:
    enum class Watching { no, yes };
    /// How often a window had to be answered lately.
    struct Rounds {
        QElapsedTimer since;
        int count = 0;
    };

    void watch(Watching watching);
    void readOrder();
    void noticed(const xcb_generic_event_t &event);
    void checkSoon();
    void check();
    [[nodiscard]] bool holdsForeignWindow(std::uint32_t window) const;

    x11::X11Connection &m_connection;
    Raise m_raise;
    RootStacking m_stacking;
    std::vector<std::uint32_t> m_panels;
    Watching m_watching = Watching::no;
    /// Notices older than this were already in the order that was read.
    std::uint32_t m_orderReadAt = 0;
    bool m_checkPosted = false;
    std::unordered_map<std::uint32_t, Rounds> m_rounds;
    std::vector<x11::EventSubscription> m_subscriptions;
};

} // namespace lumenfold
