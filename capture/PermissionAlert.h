#pragma once

#include <QCoroTask>

namespace lumenfold {

class Alerts;
class Workspace;

/// Tells the user that the program may not look at the screen, and opens the system's settings when asked to. Ends when
/// the alert is closed. The collaborators must outlive that.
[[nodiscard]] QCoro::Task<> showPermissionAlert(Alerts &alerts, Workspace &workspace);

} // namespace lumenfold
