#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <chrono>
#include <deque>

namespace lumenfold {

class PanelWindow;

/// Lets many windows that want to be painted at the same moment do it one after the other, so that the event loop gets
/// to everything else in between. A window that is painted waits for the server, which is busy with the others.
class PaintingTurns : public QObject {
    Q_OBJECT

public:
    /// After so much painting the other windows wait for the next turn of the event loop.
    static constexpr std::chrono::milliseconds allowance{8};

    PaintingTurns();

    /// Paints the window, now if its turn has come, else in one of the next turns of the event loop. Does not paint
    /// twice what waits already.
    void paint(PanelWindow &window);

private:
    void paintNow(PanelWindow &window);
    void paintWaiting();

    std::deque<QPointer<PanelWindow>> m_waiting;
    std::chrono::nanoseconds m_spent{0};
    /// Runs from the first painting of a turn to the next turn.
    QTimer m_nextTurn;
};

} // namespace lumenfold
