#pragma once

#include "platform/keyboard/HotKeyService.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace lumenfold::test {

/// Takes hotkeys as the platform does, and presses them when a test says so.
class FakeHotKeyService : public HotKeyService {
public:
    struct HotKey {
        std::uint32_t keyCode = 0;
        std::uint32_t carbonModifiers = 0;
        HotKeyID id;

        friend bool operator==(const HotKey &, const HotKey &) = default;
    };

    FakeHotKeyService();
    ~FakeHotKeyService() override;

    void installPressHandler(PressHandler handler) override;
    [[nodiscard]] HotKeyRegistration registerHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers,
                                                    HotKeyID id) override;

    /// From now on this combination is refused with the status, as when another program holds it; success takes the
    /// refusal back.
    void refuse(std::uint32_t keyCode, std::uint32_t carbonModifiers, HotKeyStatus status = hotKeyExistsError);

    /// Told of each attempt, for tests of the order among several fakes.
    std::function<void()> onRegister;

    /// How often a press handler was installed.
    [[nodiscard]] int handlerInstallations() const { return m_handlerInstallations; }
    /// Calls of registerHotKey, refused ones included.
    [[nodiscard]] const std::vector<HotKey> &registrationAttempts() const { return m_attempts; }
    /// The hotkeys that are registered now, oldest first.
    [[nodiscard]] std::vector<HotKey> registered() const;

    /// Tells the press handler, whether or not such a hotkey is registered, and returns its status; success when there
    /// is no handler.
    HotKeyStatus press(HotKeyID id);

private:
    struct Registry;

    PressHandler m_handler;
    int m_handlerInstallations = 0;
    std::vector<HotKey> m_attempts;
    std::map<std::pair<std::uint32_t, std::uint32_t>, HotKeyStatus> m_refusals;
    /// Shared with the references, which may outlive the service.
    std::shared_ptr<Registry> m_registry;
};

} // namespace lumenfold::test
