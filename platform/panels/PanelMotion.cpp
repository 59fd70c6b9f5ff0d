#include "platform/panels/PanelMotion.h"

#include "platform/panels/AnimationCurve.h"

#include <cmath>
#include <utility>

namespace lumenfold {
namespace {

double between(double start, double end, double progress)
{
    return start + (end - start) * progress;
}

Rect between(const Rect &start, const Rect &end, double progress)
{
    return {between(start.x, end.x, progress), between(start.y, end.y, progress),
            between(start.width, end.width, progress), between(start.height, end.height, progress)};
}

} // namespace

PanelMotion::PanelMotion(const Rect &frame) : m_frame(frame) {}

std::optional<Rect> PanelMotion::destinationOfMove() const
{
    if (m_frameRun && m_frameRun->start.size() == m_frameRun->end.size()) {
        return m_frameRun->end;
    }
    return std::nullopt;
}

void PanelMotion::setFrame(const Rect &frame)
{
    stop(m_frameRun);
    m_frame = frame;
}

void PanelMotion::setAlpha(double alpha)
{
    stop(m_alphaRun);
    m_alpha = alpha;
}

void PanelMotion::animate(PanelAnimation animation, TimePoint now)
{
    const auto group = std::make_shared<Group>();
    group->onCompleted = std::move(animation.onCompleted);
    const Timing timing{now, animation.duration, animation.curve, group};
    if (animation.frame) {
        stop(m_frameRun);
        ++group->pending;
        m_frameRun = Run<Rect>{m_frame, *animation.frame, timing};
    }
    if (animation.alpha) {
        stop(m_alphaRun);
        ++group->pending;
        m_alphaRun = Run<double>{m_alpha, *animation.alpha, timing};
    }
    if (group->pending == 0) {
        group->pending = 1;
        m_valueless.push_back(timing);
    }
}

void PanelMotion::advance(TimePoint now, Completions &completed)
{
    for (auto run = m_valueless.begin(); run != m_valueless.end();) {
        if (run->isOver(now)) {
            arrive(*run, completed);
            run = m_valueless.erase(run);
        } else {
            ++run;
        }
    }
    const auto advanceRun = [&](auto &run, auto &value) {
        if (!run) {
            return;
        }
        if (run->timing.isOver(now)) {
            value = run->end;
            const Timing timing = run->timing;
            run.reset();
            arrive(timing, completed);
        } else {
            value = between(run->start, run->end, run->timing.progress(now));
        }
    };
    // An older group arrives first, whichever of the two values it moves.
    if (m_frameRun && m_alphaRun && m_alphaRun->timing.begin < m_frameRun->timing.begin) {
        advanceRun(m_alphaRun, m_alpha);
        advanceRun(m_frameRun, m_frame);
    } else {
        advanceRun(m_frameRun, m_frame);
        advanceRun(m_alphaRun, m_alpha);
    }
}

double PanelMotion::Timing::progress(TimePoint now) const
{
    const std::chrono::duration<double> elapsed = now - begin;
    return progressAt(elapsed / std::chrono::duration<double>(duration), curve);
}

template <typename Value>
void PanelMotion::stop(std::optional<Run<Value>> &run)
{
    if (run) {
        run->timing.group->replaced = true;
        run.reset();
    }
}

void PanelMotion::arrive(const Timing &timing, Completions &completed)
{
    Group &group = *timing.group;
    if (--group.pending == 0 && !group.replaced && group.onCompleted) {
        completed.push_back(std::move(group.onCompleted));
    }
}

} // namespace lumenfold
