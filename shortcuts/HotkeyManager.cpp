#include "shortcuts/HotkeyManager.h"

#include "platform/keyboard/HotKeyService.h"
#include "platform/keyboard/KeyEventTap.h"
#include "platform/mainqueue/MainQueue.h"
#include "shortcuts/KeyNames.h"

#include <QDebug>

#include <algorithm>
#include <limits>
#include <map>
#include <utility>

namespace lumenfold {
namespace {

/// 'LMFD', read big-endian.
constexpr std::uint32_t signature = 0x4C4D4644;

struct HotkeyBinding {
    std::uint32_t keyCode = 0;
    std::uint32_t modifiers = 0;

    friend bool operator==(const HotkeyBinding &, const HotkeyBinding &) = default;
};

} // namespace

struct HotkeyManager::State : std::enable_shared_from_this<State> {
    State(KeyEventTapService &tapService, HotKeyService &hotKeyService, MainQueue &queue)
        : taps(tapService), hotKeys(hotKeyService), mainQueue(queue)
    {
    }

    void installPressHandler();
    void createEventTap();
    TapDisposition handleEventTap(const KeyEvent &event);
    bool handle(const KeyEvent &event);
    void run(std::uint32_t id) const;

    KeyEventTapService &taps;
    HotKeyService &hotKeys;
    MainQueue &mainQueue;
    std::uint32_t nextID = 1;
    std::map<std::uint32_t, Action> actions;
    std::map<std::uint32_t, HotkeyBinding> bindings;
    /// Only of registrations that the platform accepted.
    std::map<std::uint32_t, std::unique_ptr<HotKeyRef>> refs;
    /// Declared last: the tap goes before the hotkeys do.
    std::unique_ptr<KeyEventTap> eventTap;
};

void HotkeyManager::State::installPressHandler()
{
    hotKeys.installPressHandler([weak = weak_from_this()](HotKeyID pressed) -> HotKeyStatus {
        if (const auto state = weak.lock()) {
            state->mainQueue.post([state, id = pressed.id] { state->run(id); });
        }
        return noHotKeyError;
    });
}

void HotkeyManager::State::createEventTap()
{
    // The handler may be called after the tap was dropped inside one of its own calls, hence the weak hold.
    eventTap = taps.createTap(TapScope::hotKeys, [weak = weak_from_this()](const KeyEvent &event) {
        const auto state = weak.lock();
        return state ? state->handleEventTap(event) : TapDisposition::passOn;
    });
    if (eventTap) {
        eventTap->enable();
    } else {
        qWarning().noquote().nospace() << "LumenFold: keyboard event tap unavailable; using Carbon hotkey fallback.";
    }
}

TapDisposition HotkeyManager::State::handleEventTap(const KeyEvent &event)
{
    switch (event.type) {
    case KeyEventType::tapDisabledByTimeout:
    case KeyEventType::tapDisabledByUserInput:
        if (eventTap) {
            eventTap->enable();
        }
        return TapDisposition::passOn;
    case KeyEventType::keyDown:
        return handle(event) ? TapDisposition::swallow : TapDisposition::passOn;
    case KeyEventType::keyUp:
        break;
    }
    return TapDisposition::passOn;
}

bool HotkeyManager::State::handle(const KeyEvent &event)
{
    if (event.isAutorepeat) {
        return false;
    }
    const HotkeyBinding pressed{event.keyCode, carbonModifiers(event.flags)};
    const auto found = std::ranges::find_if(bindings, [&](const auto &entry) { return entry.second == pressed; });
    if (found == bindings.end()) {
        return false;
    }
    mainQueue.post([weak = weak_from_this(), id = found->first] {
        if (const auto state = weak.lock()) {
            state->run(id);
        }
    });
    return true;
}

void HotkeyManager::State::run(std::uint32_t id) const
{
    const auto found = actions.find(id);
    if (found == actions.end()) {
        return;
    }
    // A copy, because the action may unregister itself.
    const Action action = found->second;
    action();
}

HotkeyManager::HotkeyManager(KeyEventTapService &taps, HotKeyService &hotKeys, MainQueue &mainQueue)
    : m_state(std::make_shared<State>(taps, hotKeys, mainQueue))
{
    m_state->installPressHandler();
}

HotkeyManager::~HotkeyManager() = default;

std::uint32_t HotkeyManager::registerHotkey(std::uint32_t keyCode, std::uint32_t modifiers, Action action)
{
    State &state = *m_state;
    if (state.nextID == std::numeric_limits<std::uint32_t>::max()) {
        qFatal("LumenFold: hotkey ids are used up");
    }
    const std::uint32_t id = state.nextID++;
    state.actions[id] = std::move(action);
    state.bindings[id] = {keyCode, modifiers};
    if (!state.eventTap) {
        state.createEventTap();
    }
    HotKeyRegistration registration = state.hotKeys.registerHotKey(keyCode, modifiers, {signature, id});
    if (registration.status == noHotKeyError && registration.ref) {
        state.refs[id] = std::move(registration.ref);
    } else {
        qWarning().noquote().nospace() << "LumenFold: failed to register hotkey " << keyCode << "/" << modifiers << ": "
                                       << registration.status;
    }
    return id;
}

void HotkeyManager::unregister(std::uint32_t id)
{
    State &state = *m_state;
    state.refs.erase(id);
    state.actions.erase(id);
    state.bindings.erase(id);
    if (state.bindings.empty()) {
        state.eventTap.reset();
    }
}

void HotkeyManager::unregisterAll()
{
    State &state = *m_state;
    state.refs.clear();
    state.actions.clear();
    state.bindings.clear();
    state.eventTap.reset();
}

} // namespace lumenfold
