#pragma once

#include "tests/support/desktop/XConnection.h"

#include <QByteArray>
#include <QStringList>

namespace lumenfold::test {

/// A small clipboard manager: when a program that ends asks it to save the clipboard, it fetches `image/png`, takes the
/// clipboard and answers for it. It works while `runUntil` runs.
class ClipboardManager {
public:
    enum class Manners {
        /// Does what it is asked to do.
        diligent,
        /// Is there and never answers.
        deaf,
    };

    ClipboardManager(const QByteArray &display, Manners manners);
    ~ClipboardManager();
    ClipboardManager(const ClipboardManager &) = delete;
    ClipboardManager &operator=(const ClipboardManager &) = delete;

    /// Handles what has arrived; never waits.
    void work();

    /// What it holds; empty before it was asked to save anything.
    [[nodiscard]] QByteArray saved() const { return m_saved; }
    [[nodiscard]] int saveRequests() const { return m_saveRequests; }
    /// What the program that asked offered.
    [[nodiscard]] QStringList offered() const { return m_offered; }

private:
    void handle(const xcb_generic_event_t &event);
    void answerSaveRequest(const xcb_selection_request_event_t &request);
    void takeAnswer(const xcb_selection_notify_event_t &answer);
    void answerPaste(const xcb_selection_request_event_t &request);
    void notify(const xcb_selection_request_event_t &request, xcb_atom_t property);
    void fetch(const char *target);

    XConnection m_connection;
    Manners m_manners;
    xcb_window_t m_window = XCB_NONE;
    xcb_selection_request_event_t m_request{};
    int m_saveRequests = 0;
    QStringList m_offered;
    QByteArray m_saved;
};

} // namespace lumenfold::test
