#pragma once

#include "platform/events/ScrollDeltas.h"
#include "platform/x11/X11Connection.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace lumenfold {

/// The scroll axes of the session's pointing devices, asked for when a device is first used.
class X11ScrollAxes {
public:
    /// The connection outlives this.
    explicit X11ScrollAxes(x11::X11Connection &connection);

    /// Waits for the server the first time. Empty for a device without smooth scrolling, or that is gone.
    [[nodiscard]] const std::vector<ScrollAxis> &of(std::uint16_t device);

    /// Devices came, went or became other ones.
    void forget() { m_axes.clear(); }

private:
    x11::X11Connection &m_connection;
    std::unordered_map<std::uint16_t, std::vector<ScrollAxis>> m_axes;
};

} // namespace lumenfold
