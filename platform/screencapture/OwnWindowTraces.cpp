#include "platform/screencapture/OwnWindowTraces.h"

namespace lumenfold {

void OwnWindowTraces::leftWithoutTrace(xcb_window_t window)
{
    std::erase_if(m_traces, [window](const Trace &trace) { return trace.window == window; });
    if (m_standing.contains(window)) {
        m_traceless.insert(window);
    }
}

void OwnWindowTraces::appeared(xcb_window_t window, const QRect &frame)
{
    m_standing[window] = frame;
}

void OwnWindowTraces::moved(xcb_window_t window, const QRect &frame, Clock::time_point now)
{
    const auto standing = m_standing.find(window);
    if (standing == m_standing.end() || standing->second == frame) {
        return;
    }
    if (!frame.contains(standing->second)) {
        addTrace(window, standing->second, now);
    }
    standing->second = frame;
}

void OwnWindowTraces::left(xcb_window_t window, Clock::time_point now)
{
    const auto standing = m_standing.find(window);
    if (standing == m_standing.end()) {
        return;
    }
    if (m_traceless.erase(window) > 0) {
        std::erase_if(m_traces, [window](const Trace &trace) { return trace.window == window; });
    } else {
        addTrace(window, standing->second, now);
    }
    m_standing.erase(standing);
}

QRegion OwnWindowTraces::standingRegion() const
{
    QRegion region;
    for (const auto &[window, frame] : m_standing) {
        region += frame;
    }
    return region;
}

QRegion OwnWindowTraces::suspectRegion(Clock::time_point now, int margin) const
{
    QRegion region;
    for (const auto &[window, frame] : m_standing) {
        region += frame.adjusted(-margin, -margin, margin, margin);
    }
    for (const Trace &trace : m_traces) {
        if (now - trace.leftAt < lifetime) {
            region += trace.frame.adjusted(-margin, -margin, margin, margin);
        }
    }
    return region;
}

void OwnWindowTraces::addTrace(xcb_window_t window, const QRect &frame, Clock::time_point now)
{
    std::erase_if(m_traces, [now](const Trace &trace) { return now - trace.leftAt >= lifetime; });
    m_traces.push_back({window, frame, now});
}

} // namespace lumenfold
