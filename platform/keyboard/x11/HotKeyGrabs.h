#pragma once

#include "platform/keyboard/HotKeyService.h"
#include "platform/keyboard/x11/KeyboardMap.h"

#include <cstdint>
#include <map>

namespace lumenfold::x11 {

class KeyboardConnection;

/// Names one registration for as long as the router lives; grows.
using HotKeyToken = std::uint64_t;

struct RegisteredHotKey {
    HotKeyToken token = 0;
    KeyCombination combination;
    HotKeyID id;
};

/// The registered hotkeys and their passive grabs on the root window. Registrations of one combination share its grab.
/// The router's thread.
class HotKeyGrabs {
public:
    /// The connection must outlive this object.
    explicit HotKeyGrabs(KeyboardConnection &connection);

    /// The status is that of the grab; a refused hotkey is not kept.
    [[nodiscard]] HotKeyStatus add(const RegisteredHotKey &hotKey, const KeyboardMap &map);
    void remove(HotKeyToken token);
    void clear();

    /// The oldest registration of the combination, or null.
    [[nodiscard]] const RegisteredHotKey *find(KeyCombination combination) const;

    /// Grabs where the keys and modifiers are now. A hotkey that cannot be grabbed there is logged and stays
    /// registered: the next map may have it again.
    void useMap(const KeyboardMap &map);

private:
    [[nodiscard]] HotKeyStatus grab(const KeyGrab &grab);

    KeyboardConnection &m_connection;
    std::map<HotKeyToken, RegisteredHotKey> m_hotKeys;
    /// Empty where the present map has no such combination or another client holds it.
    std::map<KeyCombination, KeyGrab> m_grabs;
};

} // namespace lumenfold::x11
