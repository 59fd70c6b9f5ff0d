#pragma once

#include <QRegion>

namespace lumenfold {

/// Implemented by a panel's content view that knows what it paints. Asked only while no compositing manager runs,
/// before each painting: the panel's window is then cut to this region.
class PanelContentShape {
public:
    virtual ~PanelContentShape() = default;

    /// In the view's coordinates. What lies outside is neither painted nor gets the pointer.
    [[nodiscard]] virtual QRegion opaqueShape() const = 0;
};

} // namespace lumenfold
