#include "platform/panels/PaintingTurns.h"

#include "platform/panels/PanelWindow.h"

#include <algorithm>
#include <utility>

namespace lumenfold {
namespace {

/// Everything that is due comes before a timer that waits, however shortly.
constexpr std::chrono::milliseconds turnPause{1};

} // namespace

PaintingTurns::PaintingTurns()
{
    m_nextTurn.setSingleShot(true);
    m_nextTurn.setTimerType(Qt::PreciseTimer);
    m_nextTurn.setInterval(turnPause);
    connect(&m_nextTurn, &QTimer::timeout, this, &PaintingTurns::paintWaiting);
}

void PaintingTurns::paint(PanelWindow &window)
{
    if (m_waiting.empty() && m_spent < allowance) {
        paintNow(window);
    } else if (std::ranges::none_of(m_waiting, [&](const auto &each) { return each == &window; })) {
        m_waiting.emplace_back(&window);
    }
}

void PaintingTurns::paintNow(PanelWindow &window)
{
    QElapsedTimer timer;
    timer.start();
    window.paintNow();
    m_spent += std::chrono::nanoseconds(timer.nsecsElapsed());
    if (!m_nextTurn.isActive()) {
        m_nextTurn.start();
    }
}

void PaintingTurns::paintWaiting()
{
    m_spent = std::chrono::nanoseconds(0);
    while (!m_waiting.empty() && m_spent < allowance) {
        const QPointer<PanelWindow> next = m_waiting.front();
        m_waiting.pop_front();
        if (next) {
            paintNow(*next);
        }
    }
}

} // namespace lumenfold
