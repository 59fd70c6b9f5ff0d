#include "tests/components/pasteboard/ClipboardManager.h"

#include <cstring>

namespace lumenfold::test {
namespace {

constexpr auto propertyName = "CLIPBOARD_MANAGER_FETCH";

} // namespace

ClipboardManager::ClipboardManager(const QByteArray &display, Manners manners)
    : m_connection(display), m_manners(manners)
{
    xcb_connection_t *xcb = m_connection.get();
    m_window = xcb_generate_id(xcb);
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, m_window, m_connection.root(), -10, -10, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(xcb, m_window, m_connection.atom("CLIPBOARD_MANAGER"), XCB_CURRENT_TIME);
    m_connection.sync();
}

ClipboardManager::~ClipboardManager() = default;

void ClipboardManager::work()
{
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        if (m_manners == Manners::diligent) {
            handle(*event);
        }
    }
    xcb_flush(m_connection.get());
}

void ClipboardManager::handle(const xcb_generic_event_t &event)
{
    const int type = event.response_type & 0x7f;
    if (type == XCB_SELECTION_NOTIFY) {
        takeAnswer(reinterpret_cast<const xcb_selection_notify_event_t &>(event));
        return;
    }
    if (type != XCB_SELECTION_REQUEST) {
        return;
    }
    const auto &request = reinterpret_cast<const xcb_selection_request_event_t &>(event);
    if (request.selection == m_connection.atom("CLIPBOARD_MANAGER")) {
        answerSaveRequest(request);
    } else {
        answerPaste(request);
    }
}

void ClipboardManager::answerSaveRequest(const xcb_selection_request_event_t &request)
{
    ++m_saveRequests;
    m_request = request;
    fetch("TARGETS");
}

void ClipboardManager::fetch(const char *target)
{
    xcb_convert_selection(m_connection.get(), m_window, m_connection.atom("CLIPBOARD"), m_connection.atom(target),
                          m_connection.atom(propertyName), m_request.time);
}

void ClipboardManager::takeAnswer(const xcb_selection_notify_event_t &answer)
{
    const QByteArray contents = m_connection.property(m_window, propertyName);
    xcb_delete_property(m_connection.get(), m_window, m_connection.atom(propertyName));
    if (answer.target == m_connection.atom("TARGETS")) {
        for (qsizetype at = 0; at + 4 <= contents.size(); at += 4) {
            xcb_atom_t atom = XCB_NONE;
            std::memcpy(&atom, contents.constData() + at, sizeof atom);
            m_offered.append(m_connection.atomName(atom));
        }
        fetch("image/png");
        return;
    }
    m_saved = contents;
    xcb_set_selection_owner(m_connection.get(), m_window, m_connection.atom("CLIPBOARD"), XCB_CURRENT_TIME);
    notify(m_request, m_request.property);
}

void ClipboardManager::answerPaste(const xcb_selection_request_event_t &request)
{
    if (request.target != m_connection.atom("image/png")) {
        notify(request, XCB_NONE);
        return;
    }
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property, request.target,
                        8, static_cast<std::uint32_t>(m_saved.size()), m_saved.constData());
    notify(request, request.property);
}

void ClipboardManager::notify(const xcb_selection_request_event_t &request, xcb_atom_t property)
{
    xcb_selection_notify_event_t answer{};
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.time = request.time;
    answer.requestor = request.requestor;
    answer.selection = request.selection;
    answer.target = request.target;
    answer.property = property;
    xcb_send_event(m_connection.get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char *>(&answer));
}

} // namespace lumenfold::test
