#include "tests/support/fakes/FakeHotKeyService.h"

#include <utility>

namespace lumenfold::test {

struct FakeHotKeyService::Registry {
    int nextKey = 0;
    std::map<int, HotKey> hotKeys;
};

FakeHotKeyService::FakeHotKeyService() : m_registry(std::make_shared<Registry>()) {}

FakeHotKeyService::~FakeHotKeyService() = default;

void FakeHotKeyService::installPressHandler(PressHandler handler)
{
    ++m_handlerInstallations;
    m_handler = std::move(handler);
}

HotKeyRegistration FakeHotKeyService::registerHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers, HotKeyID id)
{
    if (onRegister) {
        onRegister();
    }
    class Ref : public HotKeyRef {
    public:
        Ref(std::shared_ptr<Registry> registry, int key) : m_registry(std::move(registry)), m_key(key) {}
        ~Ref() override { m_registry->hotKeys.erase(m_key); }

    private:
        std::shared_ptr<Registry> m_registry;
        int m_key;
    };

    const HotKey hotKey{keyCode, carbonModifiers, id};
    m_attempts.push_back(hotKey);
    if (const auto refused = m_refusals.find({keyCode, carbonModifiers}); refused != m_refusals.end()) {
        return {.status = refused->second, .ref = nullptr};
    }
    const int key = m_registry->nextKey++;
    m_registry->hotKeys.emplace(key, hotKey);
    return {.status = noHotKeyError, .ref = std::make_unique<Ref>(m_registry, key)};
}

void FakeHotKeyService::refuse(std::uint32_t keyCode, std::uint32_t carbonModifiers, HotKeyStatus status)
{
    if (status == noHotKeyError) {
        m_refusals.erase({keyCode, carbonModifiers});
    } else {
        m_refusals[{keyCode, carbonModifiers}] = status;
    }
}

std::vector<FakeHotKeyService::HotKey> FakeHotKeyService::registered() const
{
    std::vector<HotKey> hotKeys;
    for (const auto &[key, hotKey] : m_registry->hotKeys) {
        hotKeys.push_back(hotKey);
    }
    return hotKeys;
}

HotKeyStatus FakeHotKeyService::press(HotKeyID id)
{
    return m_handler ? m_handler(id) : noHotKeyError;
}

} // namespace lumenfold::test
