#include "tests/support/fakes/FakeAlerts.h"

#include <utility>

namespace lumenfold::test {

QCoro::Task<int> FakeAlerts::runModal(Alert alert)
{
    shown.append(alert);
    if (onCall) {
        onCall(QStringLiteral("alert ") + alert.messageText);
    }
    if (!m_answers.empty()) {
        const int returnCode = m_answers.front();
        m_answers.pop_front();
        co_return returnCode;
    }

    struct UntilAnswered {
        std::shared_ptr<Waiting> waiting;

        [[nodiscard]] bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> coroutine) const { waiting->coroutine = coroutine; }
        [[nodiscard]] int await_resume() const noexcept { return waiting->returnCode; }
    };
    auto waiting = std::make_shared<Waiting>();
    m_waiting.push_back(waiting);
    UntilAnswered answered{std::move(waiting)};
    co_return co_await answered;
}

void FakeAlerts::answerNextWith(int returnCode)
{
    m_answers.push_back(returnCode);
}

bool FakeAlerts::answer(int returnCode)
{
    if (m_waiting.empty()) {
        return false;
    }
    const std::shared_ptr<Waiting> waiting = m_waiting.front();
    m_waiting.pop_front();
    waiting->returnCode = returnCode;
    waiting->coroutine.resume();
    return true;
}

int FakeAlerts::upCount() const
{
    return static_cast<int>(m_waiting.size());
}

} // namespace lumenfold::test
