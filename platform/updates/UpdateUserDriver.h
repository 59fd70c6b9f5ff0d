#pragma once

#include "platform/updates/UpdateSearch.h"

#include <functional>

namespace lumenfold {

/// What the user wants to do about an update.
enum class UpdateChoice {
    openPage,
    /// Also when the window is simply closed.
    remindLater,
    skipVersion,
};

/// What the user sees of a check that he asked for; one window at most. Main thread.
class UpdateUserDriver {
public:
    UpdateUserDriver() = default;
    UpdateUserDriver(const UpdateUserDriver &) = delete;
    UpdateUserDriver &operator=(const UpdateUserDriver &) = delete;
    virtual ~UpdateUserDriver() = default;

    /// In place of what was shown before. `onDismissed`: the user does not want to wait; called once at most, and not
    /// after something else was shown.
    virtual void showChecking(std::function<void()> onDismissed) = 0;
    /// `onChosen` is called once, unless the program ends before.
    virtual void showUpdate(const AvailableUpdate &update, std::function<void(UpdateChoice)> onChosen) = 0;
    virtual void showUpToDate() = 0;
    virtual void showFailure(UpdateCheckError error) = 0;

    /// Whether an update is shown about which nothing has been chosen. Then it comes to the front.
    virtual bool bringUpdateForward() = 0;
};

} // namespace lumenfold
