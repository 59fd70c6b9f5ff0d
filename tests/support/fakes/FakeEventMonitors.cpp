#include "tests/support/fakes/FakeEventMonitors.h"

#include <algorithm>
#include <map>
#include <utility>

namespace lumenfold::test {

struct FakeEventMonitors::Registry {
    struct Entry {
        std::uint32_t mask = 0;
        Handler handler;
    };
    std::map<int, Entry> entries;
    int nextKey = 0;

    class Monitor : public EventMonitor {
    public:
        Monitor(std::weak_ptr<Registry> registry, int key) : m_registry(std::move(registry)), m_key(key) {}
        ~Monitor() override
        {
            if (const auto registry = m_registry.lock()) {
                registry->entries.erase(m_key);
            }
        }

    private:
        std::weak_ptr<Registry> m_registry;
        int m_key;
    };

    static std::unique_ptr<EventMonitor> add(const std::shared_ptr<Registry> &registry, std::uint32_t mask,
                                             Handler handler)
    {
        const int key = registry->nextKey++;
        registry->entries.emplace(key, Entry{mask, std::move(handler)});
        return std::make_unique<Monitor>(registry, key);
    }

    void send(const PointerEvent &event) const
    {
        std::vector<int> keys;
        for (const auto &[key, entry] : entries) {
            if ((entry.mask & eventMask(event.type)) != 0) {
                keys.push_back(key);
            }
        }
        for (const int key : keys) {
            // A handler may remove monitors, its own included.
            const auto found = entries.find(key);
            if (found != entries.end()) {
                const Handler handler = found->second.handler;
                handler(event);
            }
        }
    }

    [[nodiscard]] std::vector<std::uint32_t> masks() const
    {
        std::vector<std::uint32_t> result;
        for (const auto &[key, entry] : entries) {
            result.push_back(entry.mask);
        }
        return result;
    }
};

FakeEventMonitors::FakeEventMonitors() : m_global(std::make_shared<Registry>()), m_local(std::make_shared<Registry>())
{
}

FakeEventMonitors::~FakeEventMonitors() = default;

std::unique_ptr<EventMonitor> FakeEventMonitors::addGlobalMonitor(std::uint32_t mask, Handler handler)
{
    return Registry::add(m_global, mask, std::move(handler));
}

std::unique_ptr<EventMonitor> FakeEventMonitors::addLocalMonitor(std::uint32_t mask, Handler handler)
{
    return Registry::add(m_local, mask, std::move(handler));
}

void FakeEventMonitors::sendGlobal(const PointerEvent &event)
{
    m_global->send(event);
}

void FakeEventMonitors::sendLocal(const PointerEvent &event)
{
    m_local->send(event);
}

std::vector<std::uint32_t> FakeEventMonitors::globalMasks() const
{
    return m_global->masks();
}

std::vector<std::uint32_t> FakeEventMonitors::localMasks() const
{
    return m_local->masks();
}

} // namespace lumenfold::test
