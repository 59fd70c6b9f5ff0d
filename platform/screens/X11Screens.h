#pragma once

#include "platform/screens/ScreenSpace.h"
#include "platform/screens/Screens.h"
#include "platform/screens/X11Docks.h"
#include "platform/screens/X11Monitors.h"
#include "platform/x11/X11Connection.h"

#include <optional>
#include <vector>

class QScreen;

namespace lumenfold {

/// The screens as RandR places them, with the toolkit's scale for each. Needs a QGuiApplication on X11 whose scale
/// factors are whole (Qt::HighDpiScaleFactorRoundingPolicy::Round). Listens and never polls.
class X11Screens : public Screens {
    Q_OBJECT

public:
    /// `connection` must outlive this.
    explicit X11Screens(x11::X11Connection &connection);

    [[nodiscard]] std::vector<Screen> all() const override;
    [[nodiscard]] Point pointerLocation() const override;
    [[nodiscard]] Point fromToolkit(QPointF place) const override;

    /// The present conversion between pixels, the toolkit's coordinates and points. Changed when changed() is emitted.
    [[nodiscard]] const ScreenSpace &space() const;

private:
    void watch(QScreen *screen);
    void invalidate();
    void tellIfChanged();
    [[nodiscard]] ScreenSpace readSpace() const;
    [[nodiscard]] Rect visibleFrameOf(const ScreenSpace::PlacedScreen &screen) const;
    x11::X11Connection &m_connection;
    X11Docks m_docks;
    X11Monitors m_monitors;
    /// Nothing after a change, until somebody asks.
    mutable std::optional<ScreenSpace> m_space;
    /// Pixels; may be more than all screens together. Read with m_space.
    mutable QSize m_rootSize;
    /// What was told last.
    std::vector<Screen> m_told;
    bool m_isTellingPending = false;
};

} // namespace lumenfold
