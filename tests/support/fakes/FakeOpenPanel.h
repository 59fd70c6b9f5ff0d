#pragma once

#include "platform/filepanels/OpenPanel.h"

#include <QList>

#include <coroutine>
#include <deque>
#include <memory>

namespace lumenfold::test {

/// Shows nothing. A panel stays up until the test answers it; a test answers every panel that it lets come up.
class FakeOpenPanel : public OpenPanel {
public:
    [[nodiscard]] QCoro::Task<std::optional<QString>> chooseDirectory(Request request) override;

    /// Ends the panel that came up first among those that are up: a folder was chosen, or none.
    void answer(const std::optional<QString> &directory);

    [[nodiscard]] int upCount() const { return static_cast<int>(m_waiting.size()); }

    /// Every panel that came up, in order.
    QList<Request> shown;

private:
    struct Waiting {
        std::coroutine_handle<> coroutine;
        std::optional<QString> directory;
    };

    std::deque<std::shared_ptr<Waiting>> m_waiting;
};

} // namespace lumenfold::test
