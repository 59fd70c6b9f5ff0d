#pragma once

#include "tests/support/desktop/XServer.h"

#include <QByteArray>
#include <QList>
#include <QRect>

#include <functional>
#include <map>

namespace lumenfold::test {

/// What a window does with what is dragged over it.
enum class DropManner {
    takesTheDrop,
    /// Says that things may be dropped on it, and answers nothing.
    neverAnswers,
    refuses,
};

struct DropTargetOptions {
    /// Root pixels, origin top left.
    QRect frame{600, 200, 300, 200};
    DropManner manner = DropManner::takesTheDrop;
    /// What it asks for after the drop, in this order; a type may be asked for again.
    QList<QByteArray> asksFor{"text/uri-list"};
};

/// A window of another program on which things can be dropped (XDND version 5). It works while somebody waits for
/// something in it.
class DropTarget {
public:
    explicit DropTarget(XServer &server, const DropTargetOptions &options = {});
    ~DropTarget();
    DropTarget(const DropTarget &) = delete;
    DropTarget &operator=(const DropTarget &) = delete;

    /// True once the condition holds, false when the usual time is over first.
    [[nodiscard]] bool waitFor(const std::function<bool()> &condition);

    /// Whether something is over the window now.
    [[nodiscard]] bool isEntered() const { return m_source != XCB_NONE; }
    /// What was offered last, the best first.
    [[nodiscard]] const QList<QByteArray> &offered() const { return m_offered; }
    /// The action that was proposed last, by its name.
    [[nodiscard]] QByteArray proposedAction() const { return m_proposedAction; }
    /// Whether whoever drags knows its answer: a second place is told only after the first was answered.
    [[nodiscard]] bool isAnswerKnown() const { return m_positions > 1; }
    /// What it got for its questions, in order; an empty one was refused.
    [[nodiscard]] const QList<QByteArray> &received() const { return m_received; }
    [[nodiscard]] int drops() const { return m_drops; }
    /// Drops whose questions have all been answered.
    [[nodiscard]] int finishedDrops() const { return m_finished; }

private:
    void process();
    void takeMessage(const xcb_client_message_event_t &message);
    void takeAnswer(const xcb_selection_notify_event_t &answer);
    void takePiece(const xcb_property_notify_event_t &event);
    void enter(const xcb_client_message_event_t &message);
    void askNext();
    void send(const char *type, const QList<quint32> &data);

    const DropTargetOptions m_options;
    XConnection m_connection;
    xcb_window_t m_window = XCB_NONE;
    xcb_window_t m_source = XCB_NONE;
    xcb_timestamp_t m_dropTime = 0;
    QList<QByteArray> m_offered;
    QByteArray m_proposedAction;
    QList<QByteArray> m_received;
    /// Pieces of a long answer come one by one.
    bool m_isPiecewise = false;
    QByteArray m_pieces;
    int m_asked = 0;
    int m_positions = 0;
    int m_drops = 0;
    int m_finished = 0;
};

} // namespace lumenfold::test
