#pragma once

#include "platform/autostart/Autostart.h"

#include <optional>

namespace lumenfold::test {

/// A desktop that remembers whether it starts the program; at first it does not.
class FakeAutostart : public Autostart {
public:
    [[nodiscard]] bool isEnabled() const override { return enabled; }

    [[nodiscard]] tl::expected<void, PlatformError> setEnabled(bool wanted) override
    {
        ++changes;
        if (failure) {
            return tl::unexpected(*failure);
        }
        enabled = wanted;
        return {};
    }

    /// Also for changes by the hand of another program.
    bool enabled = false;
    /// Why it cannot be changed, if it cannot.
    std::optional<PlatformError> failure;
    /// Attempts, refused ones included.
    int changes = 0;
};

} // namespace lumenfold::test
