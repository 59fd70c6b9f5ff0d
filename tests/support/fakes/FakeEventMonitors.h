#pragma once

#include "platform/events/EventMonitors.h"

#include <memory>
#include <vector>

namespace lumenfold::test {

/// Delivers the events that a test makes up to whoever watches for them.
class FakeEventMonitors : public EventMonitors {
public:
    FakeEventMonitors();
    ~FakeEventMonitors() override;

    [[nodiscard]] std::unique_ptr<EventMonitor> addGlobalMonitor(std::uint32_t mask, Handler handler) override;
    [[nodiscard]] std::unique_ptr<EventMonitor> addLocalMonitor(std::uint32_t mask, Handler handler) override;

    /// An event over another program's window: the global monitors of its type see it, oldest first.
    void sendGlobal(const PointerEvent &event);
    /// An event over a window of this program: the local monitors of its type see it.
    void sendLocal(const PointerEvent &event);

    /// The masks of the monitors that are installed now.
    [[nodiscard]] std::vector<std::uint32_t> globalMasks() const;
    [[nodiscard]] std::vector<std::uint32_t> localMasks() const;

private:
    struct Registry;
    std::shared_ptr<Registry> m_global;
    std::shared_ptr<Registry> m_local;
};

} // namespace lumenfold::test
