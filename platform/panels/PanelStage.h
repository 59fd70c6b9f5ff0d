#pragma once

#include "platform/panels/CompositorWatch.h"
#include "platform/panels/PaintingTurns.h"
#include "platform/panels/PanelKeyboard.h"
#include "platform/panels/PanelMotion.h"
#include "platform/panels/PanelOrder.h"
#include "platform/panels/PanelServer.h"
#include "platform/panels/PanelStackKeeper.h"
#include "platform/screens/ScreenSpace.h"
#include "platform/screens/X11Screens.h"
#include "platform/x11/X11Connection.h"

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace lumenfold {

class PanelWindow;
class X11Panel;

/// What all panels of one factory share: the stacking order among themselves and above others, the clock of their
/// animations, and the moment at which what changed goes to the server: once per turn of the event loop for all panels
/// together, and not at all for what is as it was.
class PanelStage : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    PanelStage(std::unique_ptr<x11::X11Connection> connection, KeyEventTapService &taps, const X11Screens &screens,
               std::function<void(std::uint32_t)> onLeftWithoutTrace);
    ~PanelStage() override;

    void enter(X11Panel &panel);
    void leave(X11Panel &panel, std::unique_ptr<PanelWindow> window);

    /// The panel has something for the server; asked for in this turn of the event loop.
    void changed(X11Panel &panel);
    /// The panel has begun to move.
    void startClock();

    /// `window` is the panel's present native window.
    void windowAppeared(X11Panel &panel, std::uint32_t window);
    void windowVanished(std::uint32_t window);
    void orderFront(std::uint32_t window, PanelLevel level);
    void orderOut(std::uint32_t window);
    void leftWithoutTrace(std::uint32_t window) { m_onLeftWithoutTrace(window); }

    [[nodiscard]] Translucency translucency() const;
    [[nodiscard]] const ScreenSpace &space() const { return m_screens.space(); }
    [[nodiscard]] PanelServer &server() { return m_server; }
    [[nodiscard]] PaintingTurns &paintingTurns() { return m_paintingTurns; }
    [[nodiscard]] PanelKeyboard &keyboard() { return m_keyboard; }

private:
    void commit();
    void restack();
    void tick();
    void translucencyChanged();
    void everythingMoved();
    void raiseAbove(std::span<const std::uint32_t> windows, std::uint32_t above);
    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *result) override;

    std::unique_ptr<x11::X11Connection> m_connection;
    const X11Screens &m_screens;
    std::function<void(std::uint32_t)> m_onLeftWithoutTrace;
    PanelServer m_server;
    PaintingTurns m_paintingTurns;
    PanelKeyboard m_keyboard;
    CompositorWatch m_compositor;
    PanelStackKeeper m_keeper;

    std::vector<X11Panel *> m_panels;
    std::unordered_map<std::uint32_t, X11Panel *> m_panelOfWindow;
    /// Windows that somebody else destroyed: what the toolkit still asks about them fails, and nobody needs to know.
    std::unordered_set<std::uint32_t> m_lostWindows;
    PanelOrder m_order;
    /// As last asked of the server, bottom to top.
    std::vector<std::uint32_t> m_orderOnServer;
    /// Somebody was ordered to the front since the last commit, be it in vain.
    bool m_frontAsked = false;
    bool m_commitPosted = false;
    QTimer m_clock;
    std::vector<QPointer<PanelWindow>> m_retired;
};

} // namespace lumenfold
