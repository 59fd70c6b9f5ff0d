#pragma once

#include <QRegion>

namespace lumenfold {

/// Implemented by a panel's content view that knows what it paints and what of it wants the pointer. Asked before each
/// painting.
class PanelContentShape {
public:
    virtual ~PanelContentShape() = default;

    /// What the panel's window is cut to while no compositing manager runs: pixels from the view's upper left corner,
    /// `scale` of them for each unit of its coordinates. What lies outside is neither painted nor gets the pointer.
    [[nodiscard]] virtual QRegion opaqueShape(double scale) const = 0;

    /// What gets the pointer, in the view's coordinates; everywhere else it goes to the window beneath, also where the
    /// view paints a shadow.
    [[nodiscard]] virtual QRegion pointerShape() const { return opaqueShape(1); }
};

} // namespace lumenfold
