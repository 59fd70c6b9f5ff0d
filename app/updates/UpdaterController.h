#pragma once

#include "platform/updates/StandardUpdaterController.h"

#include <functional>
#include <memory>

namespace lumenfold {

class NotificationCenter;

/// Holds the updater and the one flag that the menu shows: whether there is an update. Made in its turn of the
/// start-up, and with it the updater, which begins to look for updates by itself. Main thread.
class UpdaterController : public UpdaterDelegate {
public:
    /// Nothing in a build that leaves updates to the distribution. The delegate outlives what is made, and is not
    /// called while it is being made.
    using MakeController = std::function<std::unique_ptr<StandardUpdaterController>(UpdaterDelegate &delegate)>;

    /// Posted, with the controller as its sender, when `hasAvailableUpdate` has changed its value.
    static const QString updateAvailabilityChangedNotification;

    /// `notifications` must outlive this object.
    UpdaterController(NotificationCenter &notifications, const MakeController &makeController);
    ~UpdaterController() override;

    /// The one of the program, which the composition root made and named with `setShared`.
    [[nodiscard]] static UpdaterController &shared();
    /// Not owned; null when it goes away.
    static void setShared(UpdaterController *controller);

    /// What "Check for Updates…" is sent to. Null in a build that leaves updates to the distribution: there is nothing
    /// to check then, and no entry that offers it.
    [[nodiscard]] StandardUpdaterController *controller() const { return m_controller.get(); }

    /// Whether the last check that could be made found a valid update. At first false.
    [[nodiscard]] bool hasAvailableUpdate() const { return m_hasAvailableUpdate; }
    void setHasAvailableUpdate(bool available);

    void didFindValidUpdate(const AvailableUpdate &update) override;
    void updaterDidNotFindUpdate() override;

private:
    NotificationCenter &m_notifications;
    bool m_hasAvailableUpdate = false;
    std::unique_ptr<StandardUpdaterController> m_controller;
};

} // namespace lumenfold
