#include "tests/support/fakes/FakeService.h"

#include <utility>

namespace lumenfold::test {

struct FakeLumenfoldService::Ending {
    std::shared_ptr<Operation> operation;

    [[nodiscard]] bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> coroutine) const { operation->coroutine = coroutine; }
    void await_resume() const
    {
        if (operation->error) {
            std::rethrow_exception(operation->error);
        }
    }
};

FakeLumenfoldService::Ending FakeLumenfoldService::ending()
{
    m_operations.push_back(std::make_shared<Operation>());
    return {m_operations.back()};
}

QCoro::Task<QUrl> FakeLumenfoldService::save(Image image)
{
    saved.push_back(image);
    co_await ending();
    co_return address;
}

QCoro::Task<> FakeLumenfoldService::openInLumenFold(Image image)
{
    opened.push_back(image);
    co_await ending();
}

QCoro::Task<std::vector<LumenfoldTemplate>> FakeLumenfoldService::fetchTemplates()
{
    ++fetches;
    co_await ending();
    // A copy: the task takes what it is given away from whoever gives it.
    co_return std::vector(templates);
}

void FakeLumenfoldService::succeed()
{
    end(nullptr);
}

void FakeLumenfoldService::end(std::exception_ptr error)
{
    const std::shared_ptr<Operation> operation = m_operations.front();
    m_operations.pop_front();
    operation->error = std::move(error);
    operation->coroutine.resume();
}

} // namespace lumenfold::test
