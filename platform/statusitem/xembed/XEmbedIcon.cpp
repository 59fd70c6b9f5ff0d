#include "platform/statusitem/xembed/XEmbedIcon.h"

#include <QCoreApplication>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace lumenfold {
namespace {

using namespace x11;

/// Until the tray says another.
constexpr QSize firstSize{24, 24};
/// Larger than any tray; a bound, because the size is another program's.
constexpr int largestSide = 256;
constexpr std::uint8_t alphaDepth = 32;

std::uint8_t depthOf(const xcb_screen_t &screen, xcb_visualid_t visual)
{
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0; xcb_depth_next(&depths)) {
        const auto *first = xcb_depth_visuals(depths.data);
        const auto *end = first + xcb_depth_visuals_length(depths.data);
        if (std::any_of(first, end, [visual](const xcb_visualtype_t &each) { return each.visual_id == visual; })) {
            return depths.data->depth;
        }
    }
    return 0;
}

template <typename Event>
const Event &as(const xcb_generic_event_t &event)
{
    return reinterpret_cast<const Event &>(event);
}

} // namespace

QColor writingOn(const QImage &ground)
{
    constexpr double middle = 0.5;
    // The average of all pixels.
    const QRgb average = ground.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).pixel(0, 0);
    const double brightness = (0.299 * qRed(average) + 0.587 * qGreen(average) + 0.114 * qBlue(average)) / 255;
    return brightness > middle ? Qt::black : Qt::white;
}

XEmbedIcon::XEmbedIcon(X11Connection &connection) : m_connection(connection), m_tray(connection)
{
    m_tray.onOwnerChanged = [this] {
        undock();
        dock();
    };
    m_tray.onForegroundChanged = [this] { paint(); };
    subscribe();
}

XEmbedIcon::~XEmbedIcon()
{
    undock();
}

void XEmbedIcon::setWanted(bool wanted)
{
    if (std::exchange(m_isWanted, wanted) == wanted) {
        return;
    }
    if (wanted) {
        dock();
    } else {
        undock();
    }
}

void XEmbedIcon::setIcon(const StatusIcon &icon)
{
    m_icon = icon;
    paint();
}

void XEmbedIcon::setFallbackColor(const QColor &color)
{
    m_fallbackColor = color;
    paint();
}

void XEmbedIcon::dock()
{
    if (!m_isWanted || m_window != XCB_NONE || m_tray.owner() == XCB_NONE) {
        return;
    }
    xcb_connection_t *xcb = m_connection.xcb();
    const xcb_screen_t &screen = m_connection.screen();
    xcb_visualid_t visual = m_tray.visual().value_or(screen.root_visual);
    m_depth = depthOf(screen, visual);
    if (m_depth == 0) {
        visual = screen.root_visual;
        m_depth = screen.root_depth;
    }
    const xcb_colormap_t colormap = xcb_generate_id(xcb);
    xcb_create_colormap(xcb, XCB_COLORMAP_ALLOC_NONE, colormap, m_connection.root(), visual);
    m_window = xcb_generate_id(xcb);
    m_size = firstSize;
    // Transparent where windows can be; else whatever the tray paints there.
    const xcb_create_window_value_list_t attributes{
        .background_pixmap = m_depth == alphaDepth ? XCB_BACK_PIXMAP_NONE : XCB_BACK_PIXMAP_PARENT_RELATIVE,
        .background_pixel = 0,
        .border_pixel = 0,
        // A tray that goes leaves its icons to the screen, where no window manager is to take them up.
        .override_redirect = 1,
        .event_mask = XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                      XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW,
        .colormap = colormap,
    };
    const std::uint32_t background = m_depth == alphaDepth ? XCB_CW_BACK_PIXEL : XCB_CW_BACK_PIXMAP;
    xcb_create_window_aux(
        xcb, m_depth, m_window, m_connection.root(), 0, 0, static_cast<std::uint16_t>(m_size.width()),
        static_cast<std::uint16_t>(m_size.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
        background | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, &attributes);
    xcb_free_colormap(xcb, colormap);
    m_context = xcb_generate_id(xcb);
    xcb_create_gc(xcb, m_context, m_window, 0, nullptr);

    const QByteArray name = QCoreApplication::applicationName().toUtf8();
    const QByteArray windowClass = name.toLower() + '\0' + name + '\0';
    const auto setText = [&](xcb_atom_t property, xcb_atom_t type, const QByteArray &text) {
        xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, m_window, property, type, 8,
                            static_cast<std::uint32_t>(text.size()), text.constData());
    };
    setText(m_connection.atom("_NET_WM_NAME"), m_connection.atom("UTF8_STRING"), name);
    setText(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, name);
    setText(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, windowClass);
    constexpr std::array<std::uint32_t, 2> versionAndMapped{0, 1};
    const xcb_atom_t info = m_connection.atom("_XEMBED_INFO");
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, m_window, info, info, 32, versionAndMapped.size(),
                        versionAndMapped.data());

    constexpr std::uint32_t requestDock = 0;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = m_tray.owner();
    message.type = m_connection.atom("_NET_SYSTEM_TRAY_OPCODE");
    message.data.data32[0] = XCB_CURRENT_TIME;
    message.data.data32[1] = requestDock;
    message.data.data32[2] = m_window;
    xcb_send_event(xcb, 0, m_tray.owner(), XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char *>(&message));
}

void XEmbedIcon::undock()
{
    if (m_window == XCB_NONE) {
        return;
    }
    xcb_free_gc(m_connection.xcb(), m_context);
    xcb_destroy_window(m_connection.xcb(), m_window);
    xcb_flush(m_connection.xcb());
    m_window = XCB_NONE;
    if (onHovered) {
        onHovered(false, {});
    }
}

void XEmbedIcon::subscribe()
{
    const auto on = [this](std::uint8_t type, EventHandler handler) {
        m_subscriptions.push_back(m_connection.subscribe(type, std::move(handler)));
    };
    on(XCB_BUTTON_PRESS, [this](const xcb_generic_event_t &event) { pressed(as<xcb_button_press_event_t>(event)); });
    on(XCB_EXPOSE, [this](const xcb_generic_event_t &event) {
        const auto &exposed = as<xcb_expose_event_t>(event);
        if (m_window != XCB_NONE && exposed.window == m_window && exposed.count == 0) {
            paint();
        }
    });
    on(XCB_CONFIGURE_NOTIFY, [this](const xcb_generic_event_t &event) {
        const auto &configured = as<xcb_configure_notify_event_t>(event);
        if (m_window != XCB_NONE && configured.window == m_window &&
            std::exchange(m_size, QSize(configured.width, configured.height)) != m_size) {
            paint();
        }
    });
    on(XCB_REPARENT_NOTIFY, [this](const xcb_generic_event_t &event) {
        const auto &moved = as<xcb_reparent_notify_event_t>(event);
        if (m_window != XCB_NONE && moved.window == m_window && moved.parent == m_connection.root()) {
            // The tray has let go of it.
            undock();
        }
    });
    on(XCB_DESTROY_NOTIFY, [this](const xcb_generic_event_t &event) {
        if (m_window != XCB_NONE && as<xcb_destroy_notify_event_t>(event).window == m_window) {
            undock();
        }
    });
    const auto hovered = [this](const xcb_generic_event_t &event) {
        // The two events have one shape.
        const auto &crossing = as<xcb_enter_notify_event_t>(event);
        if (m_window != XCB_NONE && crossing.event == m_window && onHovered) {
            const bool isInside = (event.response_type & 0x7f) == XCB_ENTER_NOTIFY;
            onHovered(isInside,
                      {QPoint(crossing.root_x - crossing.event_x, crossing.root_y - crossing.event_y), m_size});
        }
    };
    on(XCB_ENTER_NOTIFY, hovered);
    on(XCB_LEAVE_NOTIFY, hovered);
}

void XEmbedIcon::pressed(const xcb_button_press_event_t &event)
{
    constexpr xcb_button_t left = 1;
    constexpr xcb_button_t right = 3;
    if (m_window == XCB_NONE || event.event != m_window || (event.detail != left && event.detail != right)) {
        return;
    }
    // The press has given us the pointer; the menu, on the toolkit's connection, wants it. So let go of it, and wait
    // until that has happened.
    xcb_ungrab_pointer(m_connection.xcb(), event.time);
    (void)m_connection.reply(xcb_get_input_focus_reply, xcb_get_input_focus(m_connection.xcb()));
    if (onClicked) {
        onClicked({QPoint(event.root_x - event.event_x, event.root_y - event.event_y), m_size});
    }
}

void XEmbedIcon::paint()
{
    if (m_window == XCB_NONE || m_size.isEmpty() || std::max(m_size.width(), m_size.height()) > largestSide) {
        return;
    }
    QImage picture = ground();
    if (picture.isNull()) {
        return;
    }
    const int side = std::min(m_size.width(), m_size.height());
    const QImage icon = paintStatusIcon(m_icon, side, templateColor(picture));
    QPainter painter(&picture);
    painter.drawImage((m_size.width() - side) / 2, (m_size.height() - side) / 2, icon);
    painter.end();
    xcb_put_image(m_connection.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_window, m_context,
                  static_cast<std::uint16_t>(m_size.width()), static_cast<std::uint16_t>(m_size.height()), 0, 0, 0,
                  m_depth, static_cast<std::uint32_t>(picture.sizeInBytes()), picture.constBits());
}

QImage XEmbedIcon::ground() const
{
    if (m_depth == alphaDepth) {
        QImage nothing(m_size, QImage::Format_ARGB32_Premultiplied);
        nothing.fill(Qt::transparent);
        return nothing;
    }
    xcb_connection_t *xcb = m_connection.xcb();
    const auto width = static_cast<std::uint16_t>(m_size.width());
    const auto height = static_cast<std::uint16_t>(m_size.height());
    xcb_clear_area(xcb, 0, m_window, 0, 0, width, height);
    const auto answer = m_connection.reply(
        xcb_get_image_reply, xcb_get_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, m_window, 0, 0, width, height, ~0U));
    QImage picture(m_size, QImage::Format_RGB32);
    // Nothing while the window cannot be seen; a screen with fewer bits per pixel is not painted on.
    if (!answer || xcb_get_image_data_length(answer->get()) != picture.sizeInBytes()) {
        return {};
    }
    std::memcpy(picture.bits(), xcb_get_image_data(answer->get()), static_cast<std::size_t>(picture.sizeInBytes()));
    return picture;
}

QColor XEmbedIcon::templateColor(const QImage &ground) const
{
    if (const auto said = m_tray.foreground()) {
        return *said;
    }
    return m_depth == alphaDepth ? m_fallbackColor : writingOn(ground);
}

} // namespace lumenfold
