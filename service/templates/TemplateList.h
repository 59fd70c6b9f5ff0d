#pragma once

#include "service/LumenfoldTemplate.h"

#include <QString>

#include <cstddef>
#include <optional>
#include <vector>

namespace lumenfold {

/// What is searched for when the search field holds this text: without the spaces at both ends; line breaks stay.
[[nodiscard]] QString searchQuery(const QString &searchText);

/// The user's templates, ready to be searched as one types: in the order in which they are shown, the one that was
/// edited last first, and with their names in the form that is compared.
class TemplateList {
public:
    TemplateList() = default;
    /// Those that say nothing of when they were edited come last; equal ones stay in the order of the service.
    explicit TemplateList(std::vector<LumenfoldTemplate> templates);

    [[nodiscard]] bool isEmpty() const { return m_templates.empty(); }
    [[nodiscard]] std::size_t size() const { return m_templates.size(); }
    [[nodiscard]] const LumenfoldTemplate &at(std::size_t place) const { return m_templates.at(place); }

    /// The places of the templates whose names hold the query, whatever its case; of all for an empty one. The selected
    /// template comes first if it is among them.
    [[nodiscard]] std::vector<std::size_t> displayed(const QString &searchText,
                                                     const std::optional<QString> &selectedId) const;

private:
    std::vector<LumenfoldTemplate> m_templates;
    std::vector<QString> m_comparedNames;
};

} // namespace lumenfold
