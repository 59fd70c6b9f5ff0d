#pragma once

#include <QRect>
#include <QRegion>

#include <chrono>
#include <map>
#include <set>
#include <vector>

#include <xcb/xcb.h>

namespace lumenfold {

/// Where windows of this process are on the screen or may still be seen. Compositing managers fade windows out, so a
/// window's place stays suspect for a while after the window has left it.
///
/// Rectangles are root pixels and include a window's border. Windows are top-level ones: where a window manager put a
/// frame around one, the frame counts.
class OwnWindowTraces {
public:
    using Clock = std::chrono::steady_clock;

    /// How long a window that left may be seen. Fade-outs of common compositing managers take 0.1 to 0.4 s.
    static constexpr std::chrono::milliseconds lifetime{1000};

    /// For whoever hides a window in such a way that no fade-out can show it (it was cleared, or moved off the screen,
    /// before it was unmapped): its place need not be rebuilt. Called before or after the window is unmapped, for each
    /// time it is.
    void leftWithoutTrace(xcb_window_t window);

    // What the server tells, in its order.
    void appeared(xcb_window_t window, const QRect &frame);
    void moved(xcb_window_t window, const QRect &frame, Clock::time_point now);
    void left(xcb_window_t window, Clock::time_point now);

    /// Windows that are on the screen now, and where.
    [[nodiscard]] const std::map<xcb_window_t, QRect> &standing() const { return m_standing; }

    /// All places at which a window of ours is.
    [[nodiscard]] QRegion standingRegion() const;

    /// All places, each enlarged by `margin` pixels, at which a window of ours may be seen while a compositing manager
    /// runs.
    [[nodiscard]] QRegion suspectRegion(Clock::time_point now, int margin) const;

private:
    struct Trace {
        xcb_window_t window = XCB_NONE;
        QRect frame;
        Clock::time_point leftAt;
    };

    void addTrace(xcb_window_t window, const QRect &frame, Clock::time_point now);

    std::map<xcb_window_t, QRect> m_standing;
    /// Standing windows that said they will leave without a trace.
    std::set<xcb_window_t> m_traceless;
    std::vector<Trace> m_traces;
};

} // namespace lumenfold
