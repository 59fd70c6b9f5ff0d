#pragma once

#include "platform/alerts/Alerts.h"

#include <QList>

#include <coroutine>
#include <deque>
#include <functional>
#include <memory>

namespace lumenfold::test {

/// Shows nothing. An alert for which the test has an answer ready ends at once; any other stays up until the test
/// answers it. A test answers every alert that it lets come up.
class FakeAlerts : public Alerts {
public:
    [[nodiscard]] QCoro::Task<int> runModal(Alert alert) override;

    /// The return codes of the alerts to come, one each.
    void answerNextWith(int returnCode);

    /// Ends the alert that came up first among those that are up; false when none is.
    bool answer(int returnCode);

    [[nodiscard]] int upCount() const;

    /// Every alert that came up, in order.
    QList<Alert> shown;
    /// Told of each alert as it comes up ("alert <message text>"), for tests of the order among several fakes.
    std::function<void(const QString &)> onCall;

private:
    struct Waiting {
        std::coroutine_handle<> coroutine;
        int returnCode = 0;
    };

    std::deque<int> m_answers;
    std::deque<std::shared_ptr<Waiting>> m_waiting;
};

} // namespace lumenfold::test
