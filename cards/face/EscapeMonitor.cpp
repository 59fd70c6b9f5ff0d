#include "cards/face/EscapeMonitor.h"

#include "platform/keyboard/HotKeyService.h"
#include "platform/keyboard/KeyEventTap.h"
#include "platform/mainqueue/MainQueue.h"

#include <utility>

namespace lumenfold {
namespace {

constexpr std::uint32_t escapeKeyCode = 53;
constexpr std::uint64_t anyModifier = keyFlags::shift | keyFlags::control | keyFlags::option | keyFlags::command;
/// 'LMFP', read big-endian; the hotkeys of the program's actions have another one.
constexpr HotKeyID escapeID{.signature = 0x4C4D4650, .id = 1};

} // namespace

struct EscapeMonitor::State : std::enable_shared_from_this<State> {
    explicit State(MainQueue &mainQueue, std::function<void()> action) : queue(mainQueue), onEscape(std::move(action))
    {
    }

    TapDisposition handle(const KeyEvent &event)
    {
        if (event.type == KeyEventType::tapDisabledByTimeout || event.type == KeyEventType::tapDisabledByUserInput) {
            if (enableAgain) {
                enableAgain();
            }
            return TapDisposition::passOn;
        }
        const bool isPlainEscape =
            event.type == KeyEventType::keyDown && event.keyCode == escapeKeyCode && (event.flags & anyModifier) == 0;
        if (!isPlainEscape || event.isAutorepeat || !onEscape) {
            return TapDisposition::passOn;
        }
        queue.post([weak = weak_from_this(), action = std::exchange(onEscape, nullptr)] {
            if (!weak.expired()) {
                action();
            }
        });
        return TapDisposition::swallow;
    }

    MainQueue &queue;
    /// Empty after the first press.
    std::function<void()> onEscape;
    std::function<void()> enableAgain;
};

EscapeMonitor::EscapeMonitor(const Collaborators &collaborators, std::function<void()> onEscape)
    : m_state(std::make_shared<State>(collaborators.queue, std::move(onEscape)))
{
    // A tap sees the presses of registered hotkeys alone.
    m_hotKey = collaborators.hotKeys.registerHotKey(escapeKeyCode, 0, escapeID).ref;
    m_tap = collaborators.taps.createTap(TapScope::hotKeys, [weak = std::weak_ptr(m_state)](const KeyEvent &event) {
        const auto state = weak.lock();
        return state ? state->handle(event) : TapDisposition::passOn;
    });
    if (m_tap) {
        m_state->enableAgain = [tap = m_tap.get()] { tap->enable(); };
        m_tap->enable();
    }
}

EscapeMonitor::~EscapeMonitor() = default;

} // namespace lumenfold
