#include "tests/support/desktop/Wait.h"

#include <QCoreApplication>
#include <QThread>

#include <stdexcept>
#include <string>

namespace lumenfold::test {
namespace {

void letTheWorldMoveOn()
{
    const auto *application = QCoreApplication::instance();
    if (application && application->thread() == QThread::currentThread()) {
        QCoreApplication::processEvents();
    }
    QThread::msleep(2);
}

} // namespace

bool waitFor(const std::function<bool()> &condition, std::chrono::milliseconds timeout)
{
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        letTheWorldMoveOn();
    }
    return true;
}

void waitUntil(std::string_view what, const std::function<bool()> &condition, std::chrono::milliseconds timeout)
{
    if (!waitFor(condition, timeout)) {
        throw std::runtime_error("waited " + std::to_string(timeout.count()) + " ms for " + std::string(what));
    }
}

bool staysTrue(const std::function<bool()> &condition, std::chrono::milliseconds period)
{
    return !waitFor([&condition] { return !condition(); }, period);
}

} // namespace lumenfold::test
