#pragma once

#include "platform/alerts/Alerts.h"

namespace lumenfold {

/// Alerts as message boxes of the toolkit, in front of all windows. An alert that is still up when the program ends
/// leaves its task unfinished.
class QtAlerts : public Alerts {
public:
    [[nodiscard]] QCoro::Task<int> runModal(Alert alert) override;
};

} // namespace lumenfold
