#pragma once

#include "platform/PlatformError.h"

#include <tl/expected.hpp>

namespace lumenfold {

/// Whether the desktop starts the program when its user logs in. Main thread; waits for the disk only.
class Autostart {
public:
    Autostart() = default;
    Autostart(const Autostart &) = delete;
    Autostart &operator=(const Autostart &) = delete;
    virtual ~Autostart() = default;

    /// As it is now: other programs change it too. What cannot be read starts nothing.
    [[nodiscard]] virtual bool isEnabled() const = 0;
    /// Afterwards it is so, or the error says why not and all is as it was.
    [[nodiscard]] virtual tl::expected<void, PlatformError> setEnabled(bool enabled) = 0;
};

} // namespace lumenfold
