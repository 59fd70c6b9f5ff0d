#pragma once

#include "cards/PreviewCardVariant.h"
#include "platform/geometry/Geometry.h"
#include "platform/panels/Panel.h"

#include <QObject>

#include <memory>
#include <vector>

class QWidget;

namespace lumenfold {

class MainQueue;

/// The panels of the cards as the screen sees them: their order, whether they may be seen at all, and the way out of
/// those whose cards are gone. Main thread.
class CardPanels : public QObject {
    Q_OBJECT

public:
    /// The collaborators must outlive this object.
    CardPanels(PanelFactory &factory, MainQueue &queue);
    ~CardPanels() override;

    /// A hidden panel for a card of that variant.
    [[nodiscard]] std::unique_ptr<Panel> makePanel(PreviewCardVariant variant, const Rect &frame,
                                                   std::unique_ptr<QWidget> view);

    /// Shows the panel above all others; while they are hidden it stays off the screen.
    void orderFront(Panel &panel);
    void orderOut(Panel &panel);

    /// Brings the panels to the front, the last on top of all, but beneath what departs; nothing when they stand so
    /// already.
    void orderFrontInSequence(const std::vector<Panel *> &backToFront);

    /// Takes every panel that was ordered front off the screen and keeps all of them off it, or allows them to be seen
    /// again; showing them is the caller's.
    void setHidden(bool hidden);
    [[nodiscard]] bool areHidden() const { return m_hidden; }

    /// Lets the panel of a card that is gone leave with that animation and then takes it off the screen. `owner` owns
    /// the panel and is let go afterwards, never inside a callback of the panel or of its view.
    void depart(Panel &panel, std::shared_ptr<void> owner, PanelAnimation animation);

    /// Lets go of owners of panels that are not on screen, a few in each turn of the event loop: a window that goes
    /// takes a moment.
    void letGo(std::vector<std::shared_ptr<void>> owners);

private:
    struct Departure {
        Panel *panel = nullptr;
        std::shared_ptr<void> owner;
    };

    void finishDeparture(Panel *panel);
    void scheduleLettingGo();

    PanelFactory &m_factory;
    MainQueue &m_queue;
    bool m_hidden = false;
    /// The panels on screen, back to front, as they were ordered; those that depart are not among them.
    std::vector<Panel *> m_ordered;
    std::vector<Departure> m_departures;
    std::vector<std::shared_ptr<void>> m_leftovers;
    bool m_isLettingGo = false;
};

} // namespace lumenfold
