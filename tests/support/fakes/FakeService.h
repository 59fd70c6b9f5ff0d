#pragma once

#include "service/ApiKeySetupWindow.h"
#include "service/LumenfoldService.h"
#include "service/TemplateSelection.h"

#include <coroutine>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <vector>

namespace lumenfold::test {

/// Sends nothing. An operation goes on until the test ends it; a test ends every one that it lets begin.
class FakeLumenfoldService : public LumenfoldService {
public:
    [[nodiscard]] QCoro::Task<QUrl> save(Image image) override;
    [[nodiscard]] QCoro::Task<> openInLumenFold(Image image) override;
    [[nodiscard]] QCoro::Task<std::vector<LumenfoldTemplate>> fetchTemplates() override;

    /// What was asked for, oldest first.
    std::vector<Image> saved;
    std::vector<Image> opened;
    int fetches = 0;
    /// What save() answers.
    QUrl address{QStringLiteral("https://files.example/picture.png")};
    /// What fetchTemplates() answers; as it is when the operation ends.
    std::vector<LumenfoldTemplate> templates;

    /// Operations that go on.
    [[nodiscard]] std::size_t running() const { return m_operations.size(); }
    /// End the operation that began first among those that go on.
    void succeed();
    template <typename Error>
    void fail(const Error &error)
    {
        end(std::make_exception_ptr(error));
    }

private:
    struct Operation {
        std::coroutine_handle<> coroutine;
        std::exception_ptr error;
    };
    struct Ending;

    [[nodiscard]] Ending ending();
    void end(std::exception_ptr error);

    std::deque<std::shared_ptr<Operation>> m_operations;
};

class FakeApiKeySetupWindow : public ApiKeySetupWindow {
public:
    void present() override
    {
        ++presentations;
        if (onPresent) {
            onPresent();
        }
    }

    int presentations = 0;
    /// Told of each, for tests of the order among several fakes.
    std::function<void()> onPresent;
};

class FakeTemplateSelection : public TemplateSelection {
public:
    [[nodiscard]] std::optional<QString> selectedId() const override { return selected; }

    std::optional<QString> selected;
};

} // namespace lumenfold::test
