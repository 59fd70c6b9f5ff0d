#pragma once

#include "platform/panels/Panel.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lumenfold {

/// Where a panel is and where it is going: its frame and its alpha, each with at most one running animation. Plain
/// arithmetic on points in time that the caller passes in; knows no window and no timer.
class PanelMotion {
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    using Completions = std::vector<std::function<void()>>;

    explicit PanelMotion(const Rect &frame);

    [[nodiscard]] const Rect &frame() const { return m_frame; }
    [[nodiscard]] double alpha() const { return m_alpha; }
    [[nodiscard]] bool isMoving() const { return m_frameRun || m_alphaRun || !m_valueless.empty(); }

    /// Where a panel is going that moves and keeps its size; nothing at rest and while the size changes.
    [[nodiscard]] std::optional<Rect> destinationOfMove() const;

    /// Ends a running animation of the same value, whose group then never completes.
    void setFrame(const Rect &frame);
    void setAlpha(double alpha);

    /// Starts at the present values. A value that is already moving is taken over by the new animation; the group that
    /// moved it never completes.
    void animate(PanelAnimation animation, TimePoint now);

    /// Brings the values to `now`. The handlers of the groups all of whose values have arrived are appended to
    /// `completed`, oldest first, for the caller to call once it has shown the new values.
    void advance(TimePoint now, Completions &completed);

private:
    struct Group {
        std::function<void()> onCompleted;
        int pending = 0;
        bool replaced = false;
    };
    struct Timing {
        TimePoint begin;
        std::chrono::milliseconds duration;
        AnimationCurve curve;
        std::shared_ptr<Group> group;

        [[nodiscard]] bool isOver(TimePoint now) const { return now - begin >= duration; }
        [[nodiscard]] double progress(TimePoint now) const;
    };
    template <typename Value>
    struct Run {
        Value start;
        Value end;
        Timing timing;
    };

    template <typename Value>
    static void stop(std::optional<Run<Value>> &run);
    static void arrive(const Timing &timing, Completions &completed);

    Rect m_frame;
    double m_alpha = 1;
    std::optional<Run<Rect>> m_frameRun;
    std::optional<Run<double>> m_alphaRun;
    /// Groups that change nothing and only take their time.
    std::vector<Timing> m_valueless;
};

} // namespace lumenfold
