#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace lumenfold {

/// The platform's status of a call; 0 is success.
using HotKeyStatus = int;

inline constexpr HotKeyStatus noHotKeyError = 0;
/// Another program holds the combination.
inline constexpr HotKeyStatus hotKeyExistsError = -9878;
/// The key does not exist on this keyboard, or the platform has no hotkeys.
inline constexpr HotKeyStatus hotKeyInvalidError = -9879;

/// Handed back with each press of the hotkey.
struct HotKeyID {
    std::uint32_t signature = 0;
    std::uint32_t id = 0;

    friend bool operator==(const HotKeyID &, const HotKeyID &) = default;
};

/// A registered hotkey; unregistered when destroyed.
class HotKeyRef {
public:
    HotKeyRef() = default;
    HotKeyRef(const HotKeyRef &) = delete;
    HotKeyRef &operator=(const HotKeyRef &) = delete;
    virtual ~HotKeyRef() = default;
};

struct HotKeyRegistration {
    HotKeyStatus status = noHotKeyError;
    /// Set exactly when the status is success.
    std::unique_ptr<HotKeyRef> ref;
};

/// Single key combinations, each taken from every other program. Main thread.
class HotKeyService {
public:
    /// Called on the main thread with the id of the pressed hotkey. Its status goes back to the platform.
    using PressHandler = std::function<HotKeyStatus(HotKeyID)>;

    HotKeyService() = default;
    HotKeyService(const HotKeyService &) = delete;
    HotKeyService &operator=(const HotKeyService &) = delete;
    virtual ~HotKeyService() = default;

    /// One handler for all hotkeys of the program; a later one replaces it.
    virtual void installPressHandler(PressHandler handler) = 0;

    /// `keyCode` is a macOS virtual key code, `carbonModifiers` an OR of the carbon:: bits.
    [[nodiscard]] virtual HotKeyRegistration registerHotKey(std::uint32_t keyCode, std::uint32_t carbonModifiers,
                                                            HotKeyID id) = 0;
};

} // namespace lumenfold
