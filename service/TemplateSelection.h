#pragma once

#include <QString>

#include <optional>

namespace lumenfold {

/// Which of the user's templates screenshots are opened with.
class TemplateSelection {
public:
    TemplateSelection() = default;
    TemplateSelection(const TemplateSelection &) = delete;
    TemplateSelection &operator=(const TemplateSelection &) = delete;
    virtual ~TemplateSelection() = default;

    /// Nothing while none is chosen.
    [[nodiscard]] virtual std::optional<QString> selectedId() const = 0;
};

} // namespace lumenfold
