#include "tests/support/fakes/FakeOpenPanel.h"

#include <stdexcept>
#include <utility>

namespace lumenfold::test {

QCoro::Task<std::optional<QString>> FakeOpenPanel::chooseDirectory(Request request)
{
    struct UntilAnswered {
        std::shared_ptr<Waiting> waiting;

        [[nodiscard]] bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> coroutine) const { waiting->coroutine = coroutine; }
        [[nodiscard]] std::optional<QString> await_resume() const { return waiting->directory; }
    };

    shown.append(request);
    auto waiting = std::make_shared<Waiting>();
    m_waiting.push_back(waiting);
    UntilAnswered answered{std::move(waiting)};
    std::optional<QString> directory = co_await answered;
    co_return directory;
}

void FakeOpenPanel::answer(const std::optional<QString> &directory)
{
    if (m_waiting.empty()) {
        throw std::logic_error("no panel is up");
    }
    const std::shared_ptr<Waiting> waiting = m_waiting.front();
    m_waiting.pop_front();
    waiting->directory = directory;
    waiting->coroutine.resume();
}

} // namespace lumenfold::test
