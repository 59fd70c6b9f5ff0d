#pragma once

#include "service/templates/PreviewDownloads.h"

#include <QStringList>

#include <coroutine>
#include <list>
#include <memory>

namespace lumenfold::test {

/// Downloads nothing. A download goes on until the test ends it or its owner is gone.
class FakePreviewDownloads : public PreviewDownloads {
public:
    ~FakePreviewDownloads() override;

    [[nodiscard]] QCoro::Task<std::optional<QByteArray>> download(QUrl address, QObject *owner) override;

    /// Every address that was asked for, oldest first.
    QStringList asked;

    /// Those that go on, oldest first.
    [[nodiscard]] QStringList running() const;
    /// The most that went on at the same time.
    [[nodiscard]] int mostAtOnce() const { return m_mostAtOnce; }
    /// Ends the one of that address, which goes on.
    void end(const QString &address, const std::optional<QByteArray> &bytes);
    void endAll(const std::optional<QByteArray> &bytes);

private:
    struct Operation {
        QString address;
        std::coroutine_handle<> coroutine;
        std::optional<QByteArray> bytes;
        bool isOwned = true;
    };
    struct Ending;

    [[nodiscard]] Ending begin(const QUrl &address, QObject *owner);
    void finish(const std::shared_ptr<Operation> &operation);

    std::list<std::shared_ptr<Operation>> m_operations;
    int m_mostAtOnce = 0;
};

} // namespace lumenfold::test
