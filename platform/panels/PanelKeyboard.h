#pragma once

#include "platform/keyboard/KeyEventTap.h"

#include <functional>
#include <memory>

namespace lumenfold {

/// Who gets the key presses: at most one panel, by a tap that holds the whole keyboard. The front window keeps its
/// focus and sees none of them.
class PanelKeyboard {
public:
    using Handler = std::function<void(const KeyEvent &)>;
    enum class Grip { held, refused };

    /// The service outlives this.
    explicit PanelKeyboard(KeyEventTapService &taps);
    ~PanelKeyboard();
    PanelKeyboard(const PanelKeyboard &) = delete;
    PanelKeyboard &operator=(const PanelKeyboard &) = delete;

    /// From now on `owner` gets all key downs. `refused` when the platform gives no tap: then nobody gets them this
    /// way.
    Grip give(const void *owner, Handler handler);
    /// Lets the keyboard go, if `owner` has it.
    void takeFrom(const void *owner);
    [[nodiscard]] const void *owner() const { return m_owner; }

private:
    TapDisposition keyHappened(const KeyEvent &event);
    void closeTap();

    KeyEventTapService &m_taps;
    const void *m_owner = nullptr;
    std::shared_ptr<const Handler> m_handler;
    std::unique_ptr<KeyEventTap> m_tap;
    bool m_handling = false;
};

} // namespace lumenfold
