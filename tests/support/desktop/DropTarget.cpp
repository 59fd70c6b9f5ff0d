#include "tests/support/desktop/DropTarget.h"

#include "tests/support/desktop/Wait.h"

#include <cstring>

namespace lumenfold::test {
namespace {

constexpr quint32 version = 5;
constexpr const char *answerProperty = "LUMENFOLD_TEST_DROP";

} // namespace

DropTarget::DropTarget(XServer &server, const DropTargetOptions &options)
    : m_options(options), m_connection(server.display())
{
    xcb_connection_t *xcb = m_connection.get();
    const QRect frame = options.frame;
    m_window = xcb_generate_id(xcb);
    // Without the window manager, so that nothing but the test moves or raises it.
    const std::uint32_t values[] = {m_connection.screen()->white_pixel, 1, XCB_EVENT_MASK_PROPERTY_CHANGE};
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, m_window, m_connection.root(), static_cast<std::int16_t>(frame.x()),
                      static_cast<std::int16_t>(frame.y()), static_cast<std::uint16_t>(frame.width()),
                      static_cast<std::uint16_t>(frame.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    m_connection.setCardinals(m_window, "XdndAware", "ATOM", {version});
    xcb_map_window(xcb, m_window);
    m_connection.sync();
}

DropTarget::~DropTarget() = default;

bool DropTarget::waitFor(const std::function<bool()> &condition)
{
    return test::waitFor([&] {
        process();
        return condition();
    });
}

void DropTarget::process()
{
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        switch (event->response_type & 0x7f) {
        case XCB_CLIENT_MESSAGE:
            takeMessage(*reinterpret_cast<const xcb_client_message_event_t *>(event.get()));
            break;
        case XCB_SELECTION_NOTIFY:
            takeAnswer(*reinterpret_cast<const xcb_selection_notify_event_t *>(event.get()));
            break;
        case XCB_PROPERTY_NOTIFY:
            takePiece(*reinterpret_cast<const xcb_property_notify_event_t *>(event.get()));
            break;
        default:
            break;
        }
    }
}

void DropTarget::takeMessage(const xcb_client_message_event_t &message)
{
    const quint32 *data = message.data.data32;
    if (message.type == m_connection.atom("XdndEnter")) {
        enter(message);
    } else if (message.type == m_connection.atom("XdndPosition")) {
        ++m_positions;
        m_proposedAction = m_connection.atomName(data[4]).toLatin1();
        if (m_options.manner != DropManner::neverAnswers) {
            const bool accepts = m_options.manner == DropManner::takesTheDrop;
            constexpr quint32 acceptsAndWantsEveryPosition = 3;
            send("XdndStatus", {m_window, accepts ? acceptsAndWantsEveryPosition : 0U, 0, 0,
                                accepts ? m_connection.atom("XdndActionCopy") : 0U});
        }
    } else if (message.type == m_connection.atom("XdndLeave")) {
        m_source = XCB_NONE;
    } else if (message.type == m_connection.atom("XdndDrop")) {
        ++m_drops;
        m_dropTime = data[2];
        m_asked = 0;
        if (m_options.manner == DropManner::takesTheDrop) {
            askNext();
        }
    }
}

void DropTarget::enter(const xcb_client_message_event_t &message)
{
    const quint32 *data = message.data.data32;
    m_source = data[0];
    m_positions = 0;
    m_offered.clear();
    QList<quint32> types{data[2], data[3], data[4]};
    constexpr quint32 moreThanThree = 1;
    if (data[1] & moreThanThree) {
        types = m_connection.cardinals(m_source, "XdndTypeList");
    }
    for (const quint32 type : types) {
        if (type != XCB_NONE) {
            m_offered.append(m_connection.atomName(type).toLatin1());
        }
    }
}

void DropTarget::askNext()
{
    if (m_asked == m_options.asksFor.size()) {
        ++m_finished;
        send("XdndFinished", {m_window, 1, m_connection.atom("XdndActionCopy"), 0, 0});
        m_source = XCB_NONE;
        return;
    }
    const QByteArray &type = m_options.asksFor.at(m_asked++);
    xcb_convert_selection(m_connection.get(), m_window, m_connection.atom("XdndSelection"),
                          m_connection.atom(type.constData()), m_connection.atom(answerProperty), m_dropTime);
    xcb_flush(m_connection.get());
}

void DropTarget::takeAnswer(const xcb_selection_notify_event_t &answer)
{
    if (answer.property == XCB_NONE) {
        m_received.append(QByteArray());
        askNext();
        return;
    }
    const Reply<xcb_get_property_reply_t> kind(xcb_get_property_reply(
        m_connection.get(),
        xcb_get_property(m_connection.get(), 0, m_window, answer.property, XCB_GET_PROPERTY_TYPE_ANY, 0, 0), nullptr));
    m_isPiecewise = kind && kind->type == m_connection.atom("INCR");
    const QByteArray bytes = m_connection.property(m_window, answerProperty);
    xcb_delete_property(m_connection.get(), m_window, answer.property);
    xcb_flush(m_connection.get());
    if (m_isPiecewise) {
        m_pieces.clear();
        return;
    }
    m_received.append(bytes);
    askNext();
}

void DropTarget::takePiece(const xcb_property_notify_event_t &event)
{
    if (!m_isPiecewise || event.state != XCB_PROPERTY_NEW_VALUE || event.atom != m_connection.atom(answerProperty)) {
        return;
    }
    const QByteArray piece = m_connection.property(m_window, answerProperty);
    xcb_delete_property(m_connection.get(), m_window, event.atom);
    xcb_flush(m_connection.get());
    if (!piece.isEmpty()) {
        m_pieces.append(piece);
        return;
    }
    m_isPiecewise = false;
    m_received.append(m_pieces);
    askNext();
}

void DropTarget::send(const char *type, const QList<quint32> &data)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = m_source;
    message.type = m_connection.atom(type);
    for (qsizetype index = 0; index < data.size(); ++index) {
        message.data.data32[index] = data.at(index);
    }
    xcb_send_event(m_connection.get(), 0, m_source, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char *>(&message));
    xcb_flush(m_connection.get());
}

} // namespace lumenfold::test
