#pragma once

#include "tests/support/desktop/Wait.h"
#include "tests/support/desktop/XConnection.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace lumenfold::test {

/// Another program that pastes: a plain client of the selections, which takes large contents in pieces (INCR).
///
/// While it waits, the events of the test's own thread run, so the owner may be the test's own QApplication.
class ClipboardReader {
public:
    explicit ClipboardReader(const QByteArray &display, const char *selection = "CLIPBOARD");
    ~ClipboardReader();
    ClipboardReader(const ClipboardReader &) = delete;
    ClipboardReader &operator=(const ClipboardReader &) = delete;

    /// XCB_NONE while the clipboard belongs to nobody.
    [[nodiscard]] xcb_window_t owner() const;
    /// How often the clipboard was taken since this reader was made.
    [[nodiscard]] int ownerChanges();
    /// Returns at the very moment when it is taken again, counted from the last look. False when the time is over
    /// first.
    [[nodiscard]] bool waitForOwnerChange(std::chrono::milliseconds timeout = defaultTimeout);
    /// What is on offer; empty when there is nothing or no answer.
    [[nodiscard]] QStringList targets(std::chrono::milliseconds timeout = defaultTimeout);
    /// The contents in one form; nothing when the owner refuses, stops answering, or there is none.
    [[nodiscard]] std::optional<QByteArray> read(const char *target,
                                                 std::chrono::milliseconds timeout = defaultTimeout);
    /// How many pieces the latest read took; 1 when it came at once.
    [[nodiscard]] int pieces() const { return m_pieces; }
    /// From now on waits this long before it takes the next piece, as a sluggish clipboard manager does.
    void setPauseBetweenPieces(std::chrono::milliseconds pause) { m_pause = pause; }

private:
    using Deadline = std::chrono::steady_clock::time_point;

    /// The next event that satisfies `wanted`; nothing at the deadline.
    template <typename Wanted>
    [[nodiscard]] Reply<xcb_generic_event_t> nextEvent(Deadline deadline, Wanted wanted);
    [[nodiscard]] QByteArray takeProperty(xcb_atom_t &type);

    XConnection m_connection;
    xcb_window_t m_window = XCB_NONE;
    xcb_atom_t m_selection = XCB_NONE;
    xcb_atom_t m_property = XCB_NONE;
    std::uint8_t m_xfixesEvent = 0;
    int m_ownerChanges = 0;
    int m_pieces = 0;
    std::chrono::milliseconds m_pause{0};
};

} // namespace lumenfold::test
