#include "platform/panels/PanelOrder.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace lumenfold {
namespace {

/// Which of `values` belong to a longest ascending subsequence. Negative values never do.
std::vector<bool> longestAscent(const std::vector<std::ptrdiff_t> &values)
{
    std::vector<std::size_t> ends;
    std::vector<std::size_t> before(values.size(), values.size());
    for (std::size_t index = 0; index < values.size(); ++index) {
        if (values[index] < 0) {
            continue;
        }
        const auto place =
            std::ranges::lower_bound(ends, values[index], {}, [&](std::size_t end) { return values[end]; });
        if (place != ends.begin()) {
            before[index] = *std::prev(place);
        }
        if (place == ends.end()) {
            ends.push_back(index);
        } else {
            *place = index;
        }
    }
    std::vector<bool> member(values.size(), false);
    for (std::size_t index = ends.empty() ? values.size() : ends.back(); index < values.size(); index = before[index]) {
        member[index] = true;
    }
    return member;
}

} // namespace

std::vector<RestackStep> restackSteps(std::span<const std::uint32_t> present, std::span<const std::uint32_t> wanted)
{
    std::unordered_map<std::uint32_t, std::ptrdiff_t> places;
    for (std::size_t index = 0; index < present.size(); ++index) {
        places.emplace(present[index], static_cast<std::ptrdiff_t>(index));
    }
    std::vector<std::ptrdiff_t> presentPlaces;
    presentPlaces.reserve(wanted.size());
    for (const std::uint32_t window : wanted) {
        const auto place = places.find(window);
        presentPlaces.push_back(place == places.end() ? -1 : place->second);
    }
    const std::vector<bool> staysPut = longestAscent(presentPlaces);

    std::vector<RestackStep> steps;
    for (std::size_t index = 0; index < wanted.size(); ++index) {
        if (staysPut[index]) {
            continue;
        }
        if (index > 0) {
            steps.push_back({wanted[index], wanted[index - 1]});
            continue;
        }
        const auto anchor = std::ranges::find(staysPut, true);
        if (anchor == staysPut.end()) {
            steps.push_back({wanted[index], 0});
        } else {
            steps.push_back({wanted[index], wanted[static_cast<std::size_t>(anchor - staysPut.begin())],
                             RestackStep::Place::below});
        }
    }
    return steps;
}

void PanelOrder::orderFront(std::uint32_t window, PanelLevel level)
{
    remove(window);
    if (level == PanelLevel::floating) {
        m_windows.insert(m_windows.begin() + static_cast<std::ptrdiff_t>(m_floating), window);
        ++m_floating;
    } else {
        m_windows.push_back(window);
    }
}

void PanelOrder::remove(std::uint32_t window)
{
    const auto found = std::ranges::find(m_windows, window);
    if (found == m_windows.end()) {
        return;
    }
    if (static_cast<std::size_t>(found - m_windows.begin()) < m_floating) {
        --m_floating;
    }
    m_windows.erase(found);
}

} // namespace lumenfold
