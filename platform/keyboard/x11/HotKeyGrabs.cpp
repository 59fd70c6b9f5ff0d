#include "platform/keyboard/x11/HotKeyGrabs.h"

#include "platform/keyboard/x11/KeyboardConnection.h"

#include <QDebug>

#include <algorithm>

namespace lumenfold::x11 {

HotKeyGrabs::HotKeyGrabs(KeyboardConnection &connection) : m_connection(connection) {}

HotKeyStatus HotKeyGrabs::add(const RegisteredHotKey &hotKey, const KeyboardMap &map)
{
    if (!m_connection.isUsable()) {
        return hotKeyInvalidError;
    }
    if (!m_grabs.contains(hotKey.combination)) {
        const KeyGrab wanted = map.grabFor(hotKey.combination);
        if (const HotKeyStatus status = grab(wanted); status != noHotKeyError) {
            return status;
        }
        m_grabs.emplace(hotKey.combination, wanted);
    }
    m_hotKeys.emplace(hotKey.token, hotKey);
    return noHotKeyError;
}

void HotKeyGrabs::remove(HotKeyToken token)
{
    const auto found = m_hotKeys.find(token);
    if (found == m_hotKeys.end()) {
        return;
    }
    const KeyCombination combination = found->second.combination;
    m_hotKeys.erase(found);
    if (!find(combination)) {
        const auto grabbed = m_grabs.find(combination);
        m_connection.ungrab(grabbed->second);
        m_grabs.erase(grabbed);
    }
}

void HotKeyGrabs::clear()
{
    for (const auto &[combination, grabbed] : m_grabs) {
        m_connection.ungrab(grabbed);
    }
    m_grabs.clear();
    m_hotKeys.clear();
}

const RegisteredHotKey *HotKeyGrabs::find(KeyCombination combination) const
{
    const auto found = std::ranges::find_if(
        m_hotKeys, [combination](const auto &entry) { return entry.second.combination == combination; });
    return found == m_hotKeys.end() ? nullptr : &found->second;
}

void HotKeyGrabs::useMap(const KeyboardMap &map)
{
    // All old grabs go before the first new one is made: a key may have moved to where another one was.
    for (auto &[combination, grabbed] : m_grabs) {
        if (grabbed != map.grabFor(combination)) {
            m_connection.ungrab(grabbed);
            grabbed = {};
        }
    }
    for (auto &[combination, grabbed] : m_grabs) {
        if (grabbed.isPossible()) {
            continue;
        }
        const KeyGrab wanted = map.grabFor(combination);
        const HotKeyStatus status = grab(wanted);
        if (status == noHotKeyError) {
            grabbed = wanted;
        } else {
            qWarning().noquote().nospace() << "LumenFold: failed to register hotkey " << combination.keyCode << "/"
                                           << combination.carbonModifiers << ": " << status;
        }
    }
}

HotKeyStatus HotKeyGrabs::grab(const KeyGrab &grab)
{
    return grab.isPossible() ? m_connection.grab(grab) : hotKeyInvalidError;
}

} // namespace lumenfold::x11
