#pragma once

#include <cstdint>
#include <optional>

#include <xcb/xcb.h>

namespace lumenfold::x11 {

/// The numbers that the server gave to one client for its windows and pixmaps: whoever is within, that client made it.
struct ResourceRange {
    std::uint32_t base = 0;
    std::uint32_t mask = 0;

    [[nodiscard]] bool contains(std::uint32_t resource) const { return (resource & ~mask) == base; }
    friend bool operator==(const ResourceRange &, const ResourceRange &) = default;
};

/// The toolkit's own connection; null when the program does not run on X11.
[[nodiscard]] xcb_connection_t *qtConnection();

/// The resources of the toolkit's connection, that is, the windows of this process.
[[nodiscard]] std::optional<ResourceRange> qtResources();

} // namespace lumenfold::x11
