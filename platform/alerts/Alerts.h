#pragma once

#include <QCoroTask>
#include <QString>
#include <QStringList>

namespace lumenfold {

/// The first button's return code; the second is 1001, and so on. Closing the alert without a button, or Escape, counts
/// as the last button.
inline constexpr int alertFirstButtonReturn = 1000;

struct Alert {
    QString messageText;
    QString informativeText;
    /// The first is the default button.
    QStringList buttons;

    friend bool operator==(const Alert &, const Alert &) = default;
};

/// Asks the user. Asynchronous: the event loop goes on while the alert is up, and the caller waits for the task.
class Alerts {
public:
    Alerts() = default;
    Alerts(const Alerts &) = delete;
    Alerts &operator=(const Alerts &) = delete;
    virtual ~Alerts() = default;

    /// Shows an application-modal alert and ends with the return code of the chosen button.
    [[nodiscard]] virtual QCoro::Task<int> runModal(Alert alert) = 0;
};

} // namespace lumenfold
