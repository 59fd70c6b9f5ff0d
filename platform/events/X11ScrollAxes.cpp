#include "platform/events/X11ScrollAxes.h"

#include "platform/events/FixedPoint.h"

#include <xcb/xinput.h>

namespace lumenfold {

X11ScrollAxes::X11ScrollAxes(x11::X11Connection &connection) : m_connection(connection) {}

const std::vector<ScrollAxis> &X11ScrollAxes::of(std::uint16_t device)
{
    if (const auto known = m_axes.find(device); known != m_axes.end()) {
        return known->second;
    }
    std::vector<ScrollAxis> axes;
    const auto reply =
        m_connection.reply(xcb_input_xi_query_device_reply, xcb_input_xi_query_device(m_connection.xcb(), device));
    if (reply) {
        for (auto info = xcb_input_xi_query_device_infos_iterator(reply->get()); info.rem > 0;
             xcb_input_xi_device_info_next(&info)) {
            for (auto item = xcb_input_xi_device_info_classes_iterator(info.data); item.rem > 0;
                 xcb_input_device_class_next(&item)) {
                if (item.data->type != XCB_INPUT_DEVICE_CLASS_TYPE_SCROLL) {
                    continue;
                }
                const auto *scroll = reinterpret_cast<const xcb_input_scroll_class_t *>(item.data);
                axes.push_back({.number = scroll->number,
                                .direction = scroll->scroll_type == XCB_INPUT_SCROLL_TYPE_HORIZONTAL
                                                 ? ScrollAxis::Direction::horizontal
                                                 : ScrollAxis::Direction::vertical,
                                .increment = toDouble(scroll->increment)});
            }
        }
    }
    return m_axes.emplace(device, std::move(axes)).first->second;
}

} // namespace lumenfold
