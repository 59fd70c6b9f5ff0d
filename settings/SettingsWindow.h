#pragma once

namespace lumenfold {

/// The window in which the user changes the program's settings.
class SettingsWindow {
public:
    SettingsWindow() = default;
    SettingsWindow(const SettingsWindow &) = delete;
    SettingsWindow &operator=(const SettingsWindow &) = delete;
    virtual ~SettingsWindow() = default;

    /// Shows the window, or brings it to the front. Returns at once.
    virtual void present() = 0;
};

} // namespace lumenfold
