#pragma once

namespace lumenfold {

/// What the user has to allow before the program may look at the screen. Answers at once.
class Permissions {
public:
    Permissions() = default;
    Permissions(const Permissions &) = delete;
    Permissions &operator=(const Permissions &) = delete;
    virtual ~Permissions() = default;

    /// Whether the screen may be captured; asks nobody.
    [[nodiscard]] virtual bool preflightScreenCaptureAccess() = 0;

    /// Makes the system list the program among those that ask; true when access is given already.
    virtual bool requestScreenCaptureAccess() = 0;
};

} // namespace lumenfold
