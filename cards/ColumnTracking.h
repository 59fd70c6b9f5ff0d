#pragma once

#include "platform/events/EventMonitors.h"

#include <functional>
#include <memory>
#include <vector>

namespace lumenfold {

/// Watches the pointer and its scrolling everywhere, while there is a column to watch for.
class ColumnTracking {
public:
    using Handler = std::function<void(const PointerEvent &)>;

    /// `monitors` must outlive this object.
    explicit ColumnTracking(EventMonitors &monitors);
    ~ColumnTracking();

    /// Hands every event to `handler` from now on; nothing when it watches already.
    void start(const Handler &handler);
    void stop();

private:
    EventMonitors &m_monitors;
    std::vector<std::unique_ptr<EventMonitor>> m_installed;
};

} // namespace lumenfold
