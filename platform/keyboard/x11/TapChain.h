#pragma once

#include "platform/keyboard/KeyEventTap.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace lumenfold::x11 {

/// Whether a press belongs to a registered hotkey: taps of the scope `hotKeys` see no other.
enum class PressKind { ofHotKey, ofOtherKey };

/// One tap, shared by its owner and by both threads.
struct ChainedTap {
    ChainedTap(TapScope tapScope, KeyEventTapService::Handler tapHandler);

    const TapScope scope;
    /// Called on the main thread only.
    const KeyEventTapService::Handler handler;
    std::atomic<bool> isEnabled = false;
    std::atomic<bool> isClosed = false;
};

/// The open taps, and the question about one key press that the router's thread puts to them on the main thread.
///
/// One question is open at a time. The router does not wait for ever: a question that it has given up is never
/// answered, and its handlers that have not run yet do not run.
class TapChain {
public:
    /// `onAnswer` is called on the main thread, when an answer can be taken.
    explicit TapChain(std::function<void()> onAnswer);

    // Main thread.

    /// A disabled tap in front of all others.
    [[nodiscard]] std::shared_ptr<ChainedTap> add(TapScope scope, KeyEventTapService::Handler handler);
    void remove(const std::shared_ptr<ChainedTap> &tap);
    /// Lets the taps have their say about the event, newest first, until one swallows it.
    void answer(std::uint64_t question, const KeyEvent &event, PressKind kind);

    // The router's thread.

    /// Whether a tap would be asked about such a press.
    [[nodiscard]] bool wants(PressKind kind) const;
    /// Whether an enabled tap must see every press.
    [[nodiscard]] bool wantsWholeKeyboard() const;
    /// Opens a question about a press of this kind; to be answered on the main thread.
    [[nodiscard]] std::uint64_t open(PressKind kind);
    /// The answer, once there is one, to the question that is open.
    [[nodiscard]] std::optional<TapDisposition> takeAnswer();
    /// Ends the open question. Disables and returns the tap that kept it waiting: the one whose handler runs, or else
    /// the first that would be asked; null when none is left.
    [[nodiscard]] std::shared_ptr<ChainedTap> giveUp();

private:
    using Taps = std::vector<std::shared_ptr<ChainedTap>>;

    [[nodiscard]] static bool isAsked(const ChainedTap &tap, PressKind kind);
    [[nodiscard]] bool beginAsking(std::uint64_t question, const std::shared_ptr<ChainedTap> &tap);

    const std::function<void()> m_onAnswer;
    mutable std::mutex m_mutex;
    /// Oldest first.
    Taps m_taps;
    std::uint64_t m_lastQuestion = 0;
    /// 0 when none is open.
    std::uint64_t m_openQuestion = 0;
    PressKind m_openKind = PressKind::ofOtherKey;
    std::shared_ptr<ChainedTap> m_asked;
    std::optional<TapDisposition> m_answer;
};

} // namespace lumenfold::x11
