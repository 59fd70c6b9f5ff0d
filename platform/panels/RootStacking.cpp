#include "platform/panels/RootStacking.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace lumenfold {

RootStacking::RootStacking(FrameQuestion isFrame) : m_isFrame(std::move(isFrame)) {}

void RootStacking::reset(std::vector<Entry> bottomToTop)
{
    m_entries = std::move(bottomToTop);
    m_frames.clear();
}

void RootStacking::created(WindowId window, Redirect redirect)
{
    if (find(window) == m_entries.end()) {
        m_entries.push_back({window, redirect, MapState::unmapped});
    }
}

void RootStacking::destroyed(WindowId window)
{
    std::erase_if(m_entries, [window](const Entry &entry) { return entry.window == window; });
    m_frames.erase(window);
    m_tolerated.erase(window);
}

void RootStacking::mapped(WindowId window, Redirect redirect)
{
    if (const auto entry = find(window); entry != m_entries.end()) {
        entry->map = MapState::mapped;
        entry->redirect = redirect;
    }
}

void RootStacking::unmapped(WindowId window)
{
    if (const auto entry = find(window); entry != m_entries.end()) {
        entry->map = MapState::unmapped;
    }
}

void RootStacking::placedAbove(WindowId window, WindowId sibling, Redirect redirect)
{
    const auto entry = find(window);
    if (entry == m_entries.end()) {
        return;
    }
    entry->redirect = redirect;
    if (sibling == 0) {
        moveTo(entry, m_entries.begin());
        return;
    }
    if (const auto beneath = find(sibling); beneath != m_entries.end()) {
        moveTo(entry, std::next(beneath));
    }
}

void RootStacking::raisedToTop(WindowId window)
{
    if (const auto entry = find(window); entry != m_entries.end()) {
        moveTo(entry, m_entries.end());
    }
}

void RootStacking::loweredToBottom(WindowId window)
{
    if (const auto entry = find(window); entry != m_entries.end()) {
        moveTo(entry, m_entries.begin());
    }
}

void RootStacking::reparentedInto(WindowId window, WindowId parent)
{
    destroyed(window);
    m_frames[parent] = true;
}

void RootStacking::tolerate(WindowId window)
{
    m_tolerated.insert(window);
}

void RootStacking::tolerateNone()
{
    m_tolerated.clear();
}

std::optional<RootStacking::WindowId> RootStacking::topmostOrdinaryAbove(std::span<const WindowId> panels) const
{
    const std::unordered_set<WindowId> wanted(panels.begin(), panels.end());
    std::size_t seen = 0;
    std::optional<WindowId> ordinary;
    for (auto entry = m_entries.rbegin(); entry != m_entries.rend() && seen < wanted.size(); ++entry) {
        if (wanted.contains(entry->window)) {
            if (ordinary) {
                return ordinary;
            }
            ++seen;
        } else if (!ordinary && entry->map == MapState::mapped && isOrdinary(*entry)) {
            ordinary = entry->window;
        }
    }
    return std::nullopt;
}

std::vector<RootStacking::WindowId> RootStacking::standingBelow(std::span<const WindowId> panels, WindowId window) const
{
    std::unordered_set<WindowId> lower;
    for (const Entry &entry : m_entries) {
        if (entry.window == window) {
            break;
        }
        lower.insert(entry.window);
    }
    std::vector<WindowId> below;
    std::ranges::copy_if(panels, std::back_inserter(below), [&](WindowId panel) { return lower.contains(panel); });
    return below;
}

std::vector<RootStacking::WindowId> RootStacking::bottomToTop() const
{
    std::vector<WindowId> windows;
    std::ranges::transform(m_entries, std::back_inserter(windows), &Entry::window);
    return windows;
}

std::vector<RootStacking::Entry>::iterator RootStacking::find(WindowId window)
{
    return std::ranges::find(m_entries, window, &Entry::window);
}

void RootStacking::moveTo(std::vector<Entry>::iterator from, std::vector<Entry>::iterator before)
{
    if (before <= from) {
        std::rotate(before, from, std::next(from));
    } else {
        std::rotate(from, std::next(from), before);
    }
}

bool RootStacking::isOrdinary(const Entry &entry) const
{
    if (m_tolerated.contains(entry.window)) {
        return false;
    }
    if (entry.redirect == Redirect::managed) {
        return true;
    }
    const auto known = m_frames.find(entry.window);
    if (known != m_frames.end()) {
        return known->second;
    }
    const bool isFrame = m_isFrame(entry.window);
    m_frames.emplace(entry.window, isFrame);
    return isFrame;
}

} // namespace lumenfold
