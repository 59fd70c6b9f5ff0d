#pragma once

#include "platform/updates/UpdateFeed.h"
#include "platform/updates/UpdateUserDriver.h"

#include <QStringList>

#include <coroutine>
#include <optional>
#include <utility>
#include <vector>

namespace lumenfold::test {

/// Answers when the test says so.
class FakeUpdateFeed : public UpdateFeed {
public:
    using Answer = tl::expected<QByteArray, UpdateCheckError>;

    ~FakeUpdateFeed() override { reply(tl::unexpected(UpdateCheckError::unreachable)); }

    [[nodiscard]] QCoro::Task<Answer> fetch(qint64 maximumBytes, QObject *) override
    {
        ++requests;
        maximum = maximumBytes;
        Waiting waiting{*this};
        co_await waiting;
        co_return answer;
    }

    /// To whoever waits now.
    void reply(Answer with)
    {
        answer = std::move(with);
        for (const std::coroutine_handle<> each : std::exchange(m_waiting, {})) {
            each.resume();
        }
    }

    [[nodiscard]] bool isAsked() const { return !m_waiting.empty(); }

    int requests = 0;
    qint64 maximum = 0;
    Answer answer;

private:
    struct Waiting {
        FakeUpdateFeed &feed;

        [[nodiscard]] bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> handle) const { feed.m_waiting.push_back(handle); }
        void await_resume() const noexcept {}
    };

    std::vector<std::coroutine_handle<>> m_waiting;
};

/// Keeps what would be seen, and answers as the test says.
class FakeUpdateUserDriver : public UpdateUserDriver {
public:
    void showChecking(std::function<void()> onDismissed) override
    {
        shown.append(QStringLiteral("checking"));
        dismiss = std::move(onDismissed);
    }
    void showUpdate(const AvailableUpdate &update, std::function<void(UpdateChoice)> onChosen) override
    {
        shown.append(QStringLiteral("update ") + update.version);
        m_onChosen = std::move(onChosen);
    }
    void showUpToDate() override { shown.append(QStringLiteral("up to date")); }
    void showFailure(UpdateCheckError error) override
    {
        shown.append(QStringLiteral("failure %1").arg(static_cast<int>(error)));
    }
    bool bringUpdateForward() override
    {
        if (m_onChosen) {
            shown.append(QStringLiteral("forward"));
        }
        return m_onChosen != nullptr;
    }

    void choose(UpdateChoice choice) { std::exchange(m_onChosen, nullptr)(choice); }

    QStringList shown;
    std::function<void()> dismiss;

private:
    std::function<void(UpdateChoice)> m_onChosen;
};

} // namespace lumenfold::test
