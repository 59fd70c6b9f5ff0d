#pragma once

#include "platform/keyboard/KeyEventTap.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace lumenfold::test {

/// Delivers the key presses that a test makes up to whoever filters them, as the platform does: newest tap first, none
/// that is disabled, none after the one that swallows.
class FakeKeyEventTapService : public KeyEventTapService {
public:
    /// What became of one tap. Stays readable after the tap is closed.
    struct Tap {
        TapScope scope = TapScope::hotKeys;
        bool isEnabled = false;
        bool isClosed = false;
        /// How often enable() was called.
        int enableCalls = 0;
        Handler handler;
    };

    [[nodiscard]] std::unique_ptr<KeyEventTap> createTap(TapScope scope, Handler handler) override;

    /// Whether taps can be created; they can at first.
    void setAvailable(bool available) { m_available = available; }
    /// Calls of createTap, refused ones included.
    [[nodiscard]] int creationAttempts() const { return m_creationAttempts; }
    /// Every tap that was ever made, oldest first.
    [[nodiscard]] const std::vector<std::shared_ptr<Tap>> &taps() const { return m_taps; }
    /// How many taps have not been closed.
    [[nodiscard]] std::size_t openTaps() const;

    /// What becomes of the event after all taps that are open and enabled have had their say.
    TapDisposition send(const KeyEvent &event);
    /// A key press; `flags` is a mask of keyFlags:: bits.
    TapDisposition press(std::uint32_t keyCode, std::uint64_t flags = 0);

    /// Disables every open tap and tells it so, as the platform does with a tap that keeps the keyboard waiting.
    void disableTaps(KeyEventType notice);

private:
    [[nodiscard]] std::vector<std::shared_ptr<Tap>> newestFirst() const;

    bool m_available = true;
    int m_creationAttempts = 0;
    std::vector<std::shared_ptr<Tap>> m_taps;
};

} // namespace lumenfold::test
