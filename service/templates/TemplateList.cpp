#include "service/templates/TemplateList.h"

#include <algorithm>
#include <utility>

namespace lumenfold {
namespace {

bool isSpace(QChar character)
{
    return character == u'\t' || character.category() == QChar::Separator_Space;
}

/// Without case, and with one way to write each accented letter: an é that was typed is the é of a name.
QString compared(const QString &text)
{
    return text.toLower().normalized(QString::NormalizationForm_C);
}

} // namespace

QString searchQuery(const QString &searchText)
{
    const auto first = std::find_if_not(searchText.cbegin(), searchText.cend(), isSpace);
    const auto last = std::find_if_not(searchText.crbegin(), std::make_reverse_iterator(first), isSpace).base();
    return searchText.mid(first - searchText.cbegin(), last - first);
}

TemplateList::TemplateList(std::vector<LumenfoldTemplate> templates) : m_templates(std::move(templates))
{
    std::ranges::stable_sort(m_templates, [](const LumenfoldTemplate &one, const LumenfoldTemplate &other) {
        return one.editedAt.value_or(QString()) > other.editedAt.value_or(QString());
    });
    m_comparedNames.reserve(m_templates.size());
    for (const LumenfoldTemplate &each : m_templates) {
        m_comparedNames.push_back(compared(each.name));
    }
}

std::vector<std::size_t> TemplateList::displayed(const QString &searchText,
                                                 const std::optional<QString> &selectedId) const
{
    const QString query = compared(searchQuery(searchText));
    std::vector<std::size_t> places;
    places.reserve(m_templates.size());
    for (std::size_t place = 0; place < m_templates.size(); ++place) {
        if (query.isEmpty() || m_comparedNames[place].contains(query)) {
            places.push_back(place);
        }
    }
    if (selectedId) {
        const auto selected =
            std::ranges::find_if(places, [&](std::size_t place) { return m_templates[place].id == *selectedId; });
        if (selected != places.end()) {
            std::rotate(places.begin(), selected, std::next(selected));
        }
    }
    return places;
}

} // namespace lumenfold
