#include "platform/keyboard/x11/GrabFocusFilter.h"

#include <QByteArray>
#include <QCoreApplication>

#include <xcb/xproto.h>

namespace lumenfold::x11 {

GrabFocusFilter::GrabFocusFilter()
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

GrabFocusFilter::~GrabFocusFilter() = default;

bool GrabFocusFilter::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    constexpr std::uint8_t sentEventBit = 0x80;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    const auto type = static_cast<std::uint8_t>(event->response_type & ~sentEventBit);
    if (type != XCB_FOCUS_IN && type != XCB_FOCUS_OUT) {
        return false;
    }
    const auto mode = static_cast<const xcb_focus_in_event_t *>(message)->mode;
    return mode == XCB_NOTIFY_MODE_GRAB || mode == XCB_NOTIFY_MODE_UNGRAB;
}

} // namespace lumenfold::x11
