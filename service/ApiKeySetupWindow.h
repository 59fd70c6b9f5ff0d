#pragma once

namespace lumenfold {

/// The window that asks for the user's API key.
class ApiKeySetupWindow {
public:
    ApiKeySetupWindow() = default;
    ApiKeySetupWindow(const ApiKeySetupWindow &) = delete;
    ApiKeySetupWindow &operator=(const ApiKeySetupWindow &) = delete;
    virtual ~ApiKeySetupWindow() = default;

    /// Shows the window, or brings it to the front. Returns at once.
    virtual void present() = 0;
};

} // namespace lumenfold
