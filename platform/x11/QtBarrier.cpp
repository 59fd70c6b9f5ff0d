#include "platform/x11/QtBarrier.h"

#include "platform/x11/QtWindows.h"

#include <utility>

namespace lumenfold::x11 {

QtBarrier::QtBarrier(X11Connection &connection) : m_connection(connection), m_window(xcb_generate_id(connection.xcb()))
{
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection.xcb(), 0, m_window, connection.root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    m_subscription = connection.subscribe(XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t &event) {
        if (reinterpret_cast<const xcb_property_notify_event_t &>(event).window == m_window && !m_waiting.empty()) {
            QPromise<void> done = std::move(m_waiting.front());
            m_waiting.pop_front();
            done.finish();
        }
    });
    // The toolkit's connection must find the window there.
    (void)connection.reply(xcb_get_input_focus_reply, xcb_get_input_focus(connection.xcb()));
}

QtBarrier::~QtBarrier()
{
    xcb_destroy_window(m_connection.xcb(), m_window);
}

QFuture<void> QtBarrier::passed()
{
    QPromise<void> promise;
    promise.start();
    QFuture<void> future = promise.future();
    xcb_connection_t *qt = qtConnection();
    if (qt == nullptr || !m_connection.isUsable()) {
        promise.finish();
        return future;
    }
    constexpr std::uint8_t itemBits = 8;
    xcb_change_property(qt, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, itemBits, 0, nullptr);
    xcb_flush(qt);
    m_waiting.push_back(std::move(promise));
    return future;
}

} // namespace lumenfold::x11
