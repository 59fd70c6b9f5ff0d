#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace lumenfold {

/// The stacking order of the server's top-level windows, kept up to date from the notices that the server sends about
/// them, so that nobody has to ask. Plain bookkeeping; notices about windows it does not know change nothing.
class RootStacking {
public:
    using WindowId = std::uint32_t;
    enum class Redirect { managed, overridden };
    enum class MapState { unmapped, mapped };

    struct Entry {
        WindowId window = 0;
        Redirect redirect = Redirect::managed;
        MapState map = MapState::unmapped;
    };

    /// Whether a window manager put another client's window into this one. Asked at most once for each window.
    using FrameQuestion = std::function<bool(WindowId)>;

    explicit RootStacking(FrameQuestion isFrame);

    /// Forgets everything and starts from this order, bottom to top.
    void reset(std::vector<Entry> bottomToTop);

    void created(WindowId window, Redirect redirect);
    void destroyed(WindowId window);
    void mapped(WindowId window, Redirect redirect);
    void unmapped(WindowId window);
    /// `sibling` is the window directly beneath; 0 when there is none.
    void placedAbove(WindowId window, WindowId sibling, Redirect redirect);
    void raisedToTop(WindowId window);
    void loweredToBottom(WindowId window);
    /// The window is no longer a top-level window, because it was put into `parent`, which is thereby a frame.
    void reparentedInto(WindowId window, WindowId parent);

    /// From now on `window` counts as one that places itself.
    void tolerate(WindowId window);
    void tolerateNone();

    /// The topmost ordinary window that is shown above the lowest of `panels`. Ordinary are those that a window manager
    /// places and, without one, those that ask for none. Menus, tool tips, notifications and lock screens place
    /// themselves; they are not ordinary and stay where they are.
    [[nodiscard]] std::optional<WindowId> topmostOrdinaryAbove(std::span<const WindowId> panels) const;

    /// Those of `panels`, in the given order, that stand below `window`.
    [[nodiscard]] std::vector<WindowId> standingBelow(std::span<const WindowId> panels, WindowId window) const;

    [[nodiscard]] std::vector<WindowId> bottomToTop() const;

private:
    [[nodiscard]] std::vector<Entry>::iterator find(WindowId window);
    void moveTo(std::vector<Entry>::iterator from, std::vector<Entry>::iterator before);
    [[nodiscard]] bool isOrdinary(const Entry &entry) const;

    FrameQuestion m_isFrame;
    std::vector<Entry> m_entries;
    mutable std::unordered_map<WindowId, bool> m_frames;
    std::unordered_set<WindowId> m_tolerated;
};

} // namespace lumenfold
