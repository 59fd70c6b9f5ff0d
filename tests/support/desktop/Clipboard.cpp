#include "tests/support/desktop/Clipboard.h"

#include <QCoreApplication>
#include <QThread>

#include <poll.h>
#include <xcb/xfixes.h>

#include <cstring>

namespace lumenfold::test {
namespace {

constexpr std::uint8_t eventTypeMask = 0x7f;

std::uint8_t typeOf(const xcb_generic_event_t &event)
{
    return event.response_type & eventTypeMask;
}

} // namespace

ClipboardReader::ClipboardReader(const QByteArray &display, const char *selection) : m_connection(display)
{
    xcb_connection_t *xcb = m_connection.get();
    m_selection = m_connection.atom(selection);
    m_property = m_connection.atom("LUMENFOLD_TEST_PASTE");
    m_window = xcb_generate_id(xcb);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, m_window, m_connection.root(), -10, -10, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    const Reply<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(xcb, xcb_xfixes_query_version(xcb, 5, 0), nullptr));
    m_xfixesEvent = xcb_get_extension_data(xcb, &xcb_xfixes_id)->first_event;
    xcb_xfixes_select_selection_input(xcb, m_window, m_selection, XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    m_connection.sync();
}

ClipboardReader::~ClipboardReader() = default;

xcb_window_t ClipboardReader::owner() const
{
    const Reply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        m_connection.get(), xcb_get_selection_owner(m_connection.get(), m_selection), nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_NONE};
}

int ClipboardReader::ownerChanges()
{
    m_connection.sync();
    (void)nextEvent(Deadline::min(), [](const xcb_generic_event_t &) { return false; });
    return m_ownerChanges;
}

bool ClipboardReader::waitForOwnerChange(std::chrono::milliseconds timeout)
{
    const int xfixesNotice = m_xfixesEvent + XCB_XFIXES_SELECTION_NOTIFY;
    return nextEvent(std::chrono::steady_clock::now() + timeout, [xfixesNotice](const xcb_generic_event_t &event) {
               return typeOf(event) == xfixesNotice;
           }) != nullptr;
}

QStringList ClipboardReader::targets(std::chrono::milliseconds timeout)
{
    QStringList names;
    if (const std::optional<QByteArray> bytes = read("TARGETS", timeout)) {
        for (qsizetype at = 0; at + 4 <= bytes->size(); at += 4) {
            xcb_atom_t atom = XCB_NONE;
            std::memcpy(&atom, bytes->constData() + at, sizeof atom);
            names.append(m_connection.atomName(atom));
        }
    }
    return names;
}

std::optional<QByteArray> ClipboardReader::read(const char *target, std::chrono::milliseconds timeout)
{
    const Deadline deadline = std::chrono::steady_clock::now() + timeout;
    xcb_connection_t *xcb = m_connection.get();
    const xcb_atom_t incremental = m_connection.atom("INCR");
    const auto newContents = [this](const xcb_generic_event_t &event) {
        const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        return typeOf(event) == XCB_PROPERTY_NOTIFY && change.window == m_window && change.atom == m_property &&
               change.state == XCB_PROPERTY_NEW_VALUE;
    };
    m_pieces = 0;
    xcb_delete_property(xcb, m_window, m_property);
    xcb_convert_selection(xcb, m_window, m_selection, m_connection.atom(target), m_property, XCB_CURRENT_TIME);
    const Reply<xcb_generic_event_t> answer =
        nextEvent(deadline, [](const xcb_generic_event_t &event) { return typeOf(event) == XCB_SELECTION_NOTIFY; });
    if (!answer || reinterpret_cast<const xcb_selection_notify_event_t *>(answer.get())->property == XCB_NONE) {
        return std::nullopt;
    }
    xcb_atom_t type = XCB_NONE;
    // An INCR transfer begins when the announcement is deleted, which taking it does. The notice of the announcement
    // itself came before the answer and was passed over.
    QByteArray contents = takeProperty(type);
    m_pieces = 1;
    if (type != incremental) {
        return contents;
    }
    contents.clear();
    m_pieces = 0;
    while (true) {
        if (!nextEvent(deadline, newContents)) {
            return std::nullopt;
        }
        if (m_pause.count() > 0) {
            (void)staysTrue([] { return true; }, m_pause);
        }
        const QByteArray piece = takeProperty(type);
        if (piece.isEmpty()) {
            return contents;
        }
        contents.append(piece);
        ++m_pieces;
    }
}

template <typename Wanted>
Reply<xcb_generic_event_t> ClipboardReader::nextEvent(Deadline deadline, Wanted wanted)
{
    const auto *application = QCoreApplication::instance();
    const bool runsEvents = application && application->thread() == QThread::currentThread();
    while (true) {
        while (Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
            if (typeOf(*event) == m_xfixesEvent + XCB_XFIXES_SELECTION_NOTIFY) {
                ++m_ownerChanges;
            }
            if (wanted(*event)) {
                return event;
            }
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            return nullptr;
        }
        if (runsEvents) {
            QCoreApplication::processEvents();
        }
        xcb_flush(m_connection.get());
        pollfd readable{.fd = xcb_get_file_descriptor(m_connection.get()), .events = POLLIN, .revents = 0};
        ::poll(&readable, 1, runsEvents ? 1 : 50);
    }
}

QByteArray ClipboardReader::takeProperty(xcb_atom_t &type)
{
    constexpr std::uint32_t everything = 1u << 28;
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        m_connection.get(),
        xcb_get_property(m_connection.get(), 1, m_window, m_property, XCB_GET_PROPERTY_TYPE_ANY, 0, everything),
        nullptr));
    if (!reply) {
        return {};
    }
    type = reply->type;
    return {static_cast<const char *>(xcb_get_property_value(reply.get())), xcb_get_property_value_length(reply.get())};
}

} // namespace lumenfold::test
