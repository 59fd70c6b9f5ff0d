#include "tests/support/fakes/FakePreviewDownloads.h"

#include <QObject>

#include <algorithm>

namespace lumenfold::test {

struct FakePreviewDownloads::Ending {
    std::shared_ptr<Operation> operation;

    [[nodiscard]] bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> coroutine) const { operation->coroutine = coroutine; }
    [[nodiscard]] std::optional<QByteArray> await_resume() const { return operation->bytes; }
};

FakePreviewDownloads::~FakePreviewDownloads()
{
    while (!m_operations.empty()) {
        finish(m_operations.front());
    }
}

FakePreviewDownloads::Ending FakePreviewDownloads::begin(const QUrl &address, QObject *owner)
{
    auto operation = std::make_shared<Operation>();
    operation->address = address.toString();
    m_operations.push_back(operation);
    asked.append(operation->address);
    m_mostAtOnce = std::max(m_mostAtOnce, static_cast<int>(running().size()));
    QObject::connect(owner, &QObject::destroyed, [operation] { operation->isOwned = false; });
    return {operation};
}

QCoro::Task<std::optional<QByteArray>> FakePreviewDownloads::download(QUrl address, QObject *owner)
{
    std::optional<QByteArray> bytes = co_await begin(address, owner);
    co_return bytes;
}

QStringList FakePreviewDownloads::running() const
{
    QStringList addresses;
    for (const auto &operation : m_operations) {
        if (operation->isOwned) {
            addresses.append(operation->address);
        }
    }
    return addresses;
}

void FakePreviewDownloads::end(const QString &address, const std::optional<QByteArray> &bytes)
{
    const auto found = std::ranges::find_if(
        m_operations, [&](const auto &operation) { return operation->isOwned && operation->address == address; });
    Q_ASSERT(found != m_operations.end());
    (*found)->bytes = bytes;
    finish(*found);
}

void FakePreviewDownloads::endAll(const std::optional<QByteArray> &bytes)
{
    const QStringList addresses = running();
    for (const QString &address : addresses) {
        end(address, bytes);
    }
}

void FakePreviewDownloads::finish(const std::shared_ptr<Operation> &operation)
{
    const std::shared_ptr<Operation> kept = operation;
    m_operations.remove(kept);
    kept->coroutine.resume();
}

} // namespace lumenfold::test
