#pragma once

#include "platform/panels/PanelOrder.h"
#include "platform/x11/X11Atoms.h"

#include <QColor>
#include <QRect>
#include <QRegion>

#include <cstdint>
#include <optional>

#include <xcb/xcb.h>

namespace lumenfold {

/// Whether translucent windows blend with what is beneath them.
enum class Translucency { unavailable, available };

/// What panels ask of the X server about their windows, beyond what the toolkit does. On the toolkit's own connection,
/// so that everything happens in the order in which it and the toolkit's painting were asked for. Pixels throughout.
///
/// A window may be gone at any moment; the requests then do nothing.
class PanelServer {
public:
    explicit PanelServer(xcb_connection_t *toolkitConnection);

    /// Tells window managers and compositors what kind of window this is: no shadow, no animation, no direct scan-out
    /// of what is beneath, no entry in lists. `transparentMargin` is the invisible band around the content.
    void dress(xcb_window_t window, int transparentMargin);

    /// Whether the property holds a window's state, as dress() sets it.
    [[nodiscard]] bool isState(xcb_atom_t property);

    /// What the server shows where the toolkit has not painted yet: `fill` when windows blend, else what was on the
    /// screen before.
    void setBackground(xcb_window_t window, Translucency translucency, const QColor &fill);

    /// Asks only for what differs from `present`.
    void place(xcb_window_t window, const std::optional<QRect> &present, const QRect &wanted);
    void restack(const RestackStep &step);

    /// 0 is invisible, 1 opaque; heeded by compositing managers only.
    void setOpacity(xcb_window_t window, double alpha);

    enum class Cut { whatIsSeen, whatGetsThePointer };
    /// Nothing: not cut at all.
    void setShape(xcb_window_t window, Cut cut, const std::optional<QRegion> &shape);

    /// Makes the whole content transparent.
    void erase(xcb_window_t window);

    void flush();

private:
    void setCardinals(xcb_window_t window, const char *property, std::initializer_list<std::uint32_t> values);
    void setAtoms(xcb_window_t window, const char *property, std::initializer_list<const char *> names);
    void forgetOutcome(xcb_void_cookie_t cookie);

    xcb_connection_t *m_connection;
    x11::X11Atoms m_atoms;
};

} // namespace lumenfold
