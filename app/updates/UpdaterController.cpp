#include "app/updates/UpdaterController.h"

#include "platform/notifications/NotificationCenter.h"

namespace lumenfold {
namespace {

UpdaterController *sharedController = nullptr;

} // namespace

const QString UpdaterController::updateAvailabilityChangedNotification =
    QStringLiteral("LumenFold.updateAvailabilityChanged");

UpdaterController::UpdaterController(NotificationCenter &notifications, const MakeController &makeController)
    : m_notifications(notifications), m_controller(makeController(*this))
{
}

UpdaterController::~UpdaterController() = default;

UpdaterController &UpdaterController::shared()
{
    Q_ASSERT_X(sharedController, "UpdaterController::shared", "called before the composition root made it");
    return *sharedController;
}

void UpdaterController::setShared(UpdaterController *controller)
{
    sharedController = controller;
}

void UpdaterController::setHasAvailableUpdate(bool available)
{
    if (available == m_hasAvailableUpdate) {
        return;
    }
    m_hasAvailableUpdate = available;
    m_notifications.post(updateAvailabilityChangedNotification, this);
}

void UpdaterController::didFindValidUpdate(const AvailableUpdate &)
{
    setHasAvailableUpdate(true);
}

void UpdaterController::updaterDidNotFindUpdate()
{
    setHasAvailableUpdate(false);
}

} // namespace lumenfold
